// SPDX-License-Identifier: MIT
#include "tables/export_table.h"

#include <algorithm>
#include <array>
#include <utility>

#include "tables/columns.h"
#include "tables/row_rules.h"

namespace kova {

namespace {

constexpr auto columns = std::to_array<Column<PropertyRecord>>({
    {"EXPORT_NAME", &PropertyRecord::exportName},
    {"LOCAL_NAME", &PropertyRecord::localName},
    {"PROPERTY", &PropertyRecord::propertyName},
    {.tag = "PROPERTY_SIZE", .member = &PropertyRecord::outputSize, .holdsNumber = true},
    {"FORMAT", &PropertyRecord::outputFormat},
    {.tag = "PROPERTY_INSIZE",
     .member = &PropertyRecord::inputSize,
     .mayBeMissing = true,
     .holdsNumber = true},
    {.tag = "INFORMAT", .member = &PropertyRecord::inputFormat, .mayBeMissing = true},
    {.tag = "PROPERTY_ID", .member = {}, .mayBeMissing = true},
    {"ACCESS", &PropertyRecord::access},
    {.tag = "NUM_MODULES", .member = &PropertyRecord::numModules, .holdsNumber = true},
    {"DESCRIPTION", &PropertyRecord::description},
    {.tag = "NUM_STEPS",
     .member = &PropertyRecord::numSteps,
     .mayBeMissing = true,
     .holdsNumber = true},
});

}  // namespace

std::int16_t findPropertyIndex(const ExportTable& exportTable, std::int16_t exportCount,
                               std::string_view expName, std::string_view prpName) {
  const auto end = exportTable.begin() + exportCount;
  const auto found = std::find_if(exportTable.begin(), end, [&](const PropertyRecord& row) {
    return row.propertyName == prpName && row.exportName == expName;
  });
  return static_cast<std::int16_t>(found - exportTable.begin());
}

ReadResult readExportTable(const FileSystem& files, const Path& file,
                           const std::function<void(PropertyRecord&&)>& take) {
  RowReader reader(columns);
  PropertyRecord record;
  return readTable(
      files, file, [&](std::string_view header) { reader.findColumns(header); },
      [&](const CsvFields& fields, std::int16_t rows) {
        checkRoom(rows);
        reader.fill(record, fields);
        take(std::move(record));
        return true;
      });
}

ExportTexts exportTexts(const PropertyRecord& row) {
  ExportTexts texts;
  std::size_t index = 0;
  for (const auto& column : columns) {
    const auto* text = std::get_if<std::string PropertyRecord::*>(&column.member);
    if (text != nullptr) texts.at(index++) = row.*(*text);
  }
  return texts;
}

std::span<const ColumnFacts> exportColumns() {
  static constexpr auto facts = factsOf(columns);
  return facts;
}

std::string exportHeaderLine() {
  return headerLine(columns);
}

std::string exportDataLine(const PropertyRecord& row, std::int16_t index) {
  return dataLine(columns, row, signedNumberText(index + 1));
}

std::string listLine(const PropertyRecord& row, std::string_view text) {
  constexpr std::size_t brackets = std::string_view("[]  <>").size();
  std::string line;
  line.reserve(row.exportName.size() + row.propertyName.size() + text.size() + brackets);
  line.append("[").append(row.exportName).append("] ").append(row.propertyName);
  return line.append(" <").append(text).append(">");
}

}  // namespace kova
