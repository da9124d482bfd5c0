// SPDX-License-Identifier: MIT
// The export table: all properties of the device server, and its file.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tables/columns.h"
#include "tables/device_files.h"
#include "tables/tagged_csv.h"

namespace kova {

inline constexpr std::string_view exportsFileName = "exports.csv";

/// One property of the device server. Texts are as typed or as read.
struct PropertyRecord {
  std::string exportName;
  std::string localName;
  std::string numModules;
  std::string propertyName;
  std::string description;  ///< starts with the range prefix, if any
  std::string outputSize;
  std::string outputFormat;  ///< table name, and "." and array type if one applies
  std::string inputSize;
  std::string inputFormat;
  std::string access;
  std::string numSteps;
  bool hasHistory = false;
  bool hasDeviceList = false;
  bool hasAlarmWatch = false;
  SharedNames devices;

  bool operator==(const PropertyRecord&) const = default;
};

template <>
inline constexpr auto tableColumns<PropertyRecord> = std::to_array<Column<PropertyRecord>>({
    {"EXPORT_NAME", &PropertyRecord::exportName, "exportName"},
    {"LOCAL_NAME", &PropertyRecord::localName, "localName"},
    {"PROPERTY", &PropertyRecord::propertyName, "property"},
    {.tag = "PROPERTY_SIZE",
     .member = &PropertyRecord::outputSize,
     .key = "outputSize",
     .holdsNumber = true},
    {"FORMAT", &PropertyRecord::outputFormat, "outputFormat"},
    {.tag = "PROPERTY_INSIZE",
     .member = &PropertyRecord::inputSize,
     .key = "inputSize",
     .mayBeMissing = true,
     .holdsNumber = true},
    {.tag = "INFORMAT",
     .member = &PropertyRecord::inputFormat,
     .key = "inputFormat",
     .mayBeMissing = true},
    {.tag = "PROPERTY_ID", .member = {}, .mayBeMissing = true},
    {"ACCESS", &PropertyRecord::access, "access"},
    {.tag = "NUM_MODULES",
     .member = &PropertyRecord::numModules,
     .key = "devices",
     .holdsNumber = true},
    {"DESCRIPTION", &PropertyRecord::description, "description"},
    {.tag = "NUM_STEPS",
     .member = &PropertyRecord::numSteps,
     .key = "steps",
     .mayBeMissing = true,
     .holdsNumber = true},
});

using ExportTable = std::vector<PropertyRecord>;

/// Index of the first of the `exportCount` active rows with both names, or `exportCount`.
std::int16_t findPropertyIndex(const ExportTable& exportTable, std::int16_t exportCount,
                               std::string_view expName, std::string_view prpName);

/// Reads a table and passes each row, with only its columns set, to `take`. A Failure thrown by
/// `take` ends the reading like any other; its row does not count.
ReadResult readExportTable(std::string_view content,
                           const std::function<void(PropertyRecord&&)>& take);

/// The columns of a row except its number, in the order of the file.
using ExportTexts = std::array<std::string_view, tableColumns<PropertyRecord>.size() - 1>;
/// Valid until the row changes.
ExportTexts exportTexts(const PropertyRecord& row);

/// The columns of "exports.csv" in the order of the file.
std::span<const ColumnFacts> exportColumns();

/// Header line of "exports.csv" with its line ending.
std::string exportHeaderLine();
/// Data line of row `index` (from 0) with its line ending.
std::string exportDataLine(const PropertyRecord& row, std::int16_t index);

/// Line of a row in the property list: "[export name] property name <text>".
std::string listLine(const PropertyRecord& row, std::string_view text);

}  // namespace kova
