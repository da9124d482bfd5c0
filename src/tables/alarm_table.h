// SPDX-License-Identifier: MIT
// The alarm watch table: which properties a local alarm server watches, and its file.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tables/column_facts.h"
#include "tables/tagged_csv.h"

namespace kova {

inline constexpr std::string_view alarmFileName = "almwatch.csv";

/// Thresholds of one alarm watch.
struct AlarmWatchRecord {
  std::string localName;
  std::string propertyName;
  std::string device;
  std::int32_t size = 0;
  std::string format;
  std::int16_t alarmSystem = 0;
  std::int16_t severity = 0;
  std::int16_t countThreshold = 0;  ///< has no column in the file
  float high = 0;
  float low = 0;
  float highWarn = 0;
  float lowWarn = 0;
  std::string mask;
  std::string normal;
};

/// The alarm settings of the property in the form, as typed.
struct AlarmForm {
  std::string localName;  ///< whole; rows store its first 6 characters
  std::string propertyName;
  std::string device;
  std::string outputSize;
  std::string format;
  std::string alarmSystem;
  std::string severity;
  std::string countThreshold;
  std::string high;
  std::string low;
  std::string highWarn;
  std::string lowWarn;
  std::string mask;
  std::string normal;
};

/// Up to 1001 rows, of which the first `alarmCount` are live; the others keep what they held.
using AlarmTable = std::vector<AlarmWatchRecord>;

/// The columns of the file in its order.
std::span<const ColumnFacts> alarmColumns();

/// Reads the file over the rows from 0 on. `alarmCount` becomes the number of rows that have both
/// names.
ReadResult ReadAlarmWatchFile(const FileSystem& files, const Path& file, AlarmTable& alarmTable,
                              std::int16_t& alarmCount);

/// Appends the form's row, unless the table is full. Throws ValueFailure, and has changed nothing
/// then, if a text does not fit its field.
void AppendAlarmWatchFile(AlarmTable& alarmTable, std::int16_t& alarmCount, const AlarmForm& form);

/// Writes the rows that have both names. Throws Failure; the file on disk is then as it was.
void WriteAlarmWatchFile(const ReplaceFile& replace, const Path& file, const AlarmTable& alarmTable,
                         std::int16_t alarmCount);

/// First live row with this pair of names, or null. Valid until the table changes.
const AlarmWatchRecord* findAlarm(const AlarmTable& alarmTable, std::int16_t alarmCount,
                                  std::string_view lclName, std::string_view prpName);

/// A live row has this property name, whatever its local name.
bool PrpIsWatchTable(const AlarmTable& alarmTable, std::int16_t alarmCount,
                     std::string_view prpName);

}  // namespace kova
