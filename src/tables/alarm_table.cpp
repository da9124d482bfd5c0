// SPDX-License-Identifier: MIT
#include "tables/alarm_table.h"

#include <algorithm>
#include <array>
#include <utility>

#include "tables/columns.h"
#include "tables/row_rules.h"

namespace kova {

namespace {

constexpr auto columns = std::to_array<Column<AlarmWatchRecord>>({
    {"LocalName", &AlarmWatchRecord::localName, {"LOCAL NAME", "LOCAL_NAME"}},
    {"DeviceName", &AlarmWatchRecord::device, {"DEVICE"}},
    {"property", &AlarmWatchRecord::propertyName},
    {"size", &AlarmWatchRecord::size},
    {"Format", &AlarmWatchRecord::format},
    {"severity", &AlarmWatchRecord::severity},
    {"alarmSystem", &AlarmWatchRecord::alarmSystem},
    {"HIGH", &AlarmWatchRecord::high, {}, true},
    {"LOW", &AlarmWatchRecord::low, {}, true},
    {"HIGHWARN", &AlarmWatchRecord::highWarn, {}, true},
    {"LOWWARN", &AlarmWatchRecord::lowWarn, {}, true},
    {"MASK", &AlarmWatchRecord::mask, {}, true},
    {"NORMAL", &AlarmWatchRecord::normal, {}, true},
});

bool hasNames(const AlarmWatchRecord& row) {
  return !row.propertyName.empty() && !row.localName.empty();
}

}  // namespace

std::span<const ColumnFacts> alarmColumns() {
  static constexpr auto facts = factsOf(columns);
  return facts;
}

ReadResult ReadAlarmWatchFile(const FileSystem& files, const Path& file, AlarmTable& alarmTable,
                              std::int16_t& alarmCount) {
  RowReader reader(columns);
  ReadResult result = readTable(
      files, file, [&](std::string_view header) { reader.findColumns(header); },
      [&](const CsvFields& fields, std::int16_t rows) {
        // A line without names takes no row, also where there is none left.
        const bool named = !reader.field(fields, &AlarmWatchRecord::propertyName).empty() &&
                           !reader.field(fields, &AlarmWatchRecord::localName).empty();
        if (!named && rows >= tableRows) return false;
        checkRoom(rows);
        reader.fill(rowOf(alarmTable, rows), fields);
        return named;
      });
  alarmCount = result.rows;
  return result;
}

void AppendAlarmWatchFile(AlarmTable& alarmTable, std::int16_t& alarmCount, const AlarmForm& form) {
  if (alarmCount >= appendLimit) return;
  AlarmWatchRecord record;
  record.alarmSystem = converted(FormValue::alarmSystem, form.alarmSystem, toInt16);
  record.countThreshold = converted(FormValue::countThreshold, form.countThreshold, toInt16);
  record.device = form.device;
  record.format = form.format;
  record.high = converted(FormValue::high, form.high, toSingle);
  record.highWarn = converted(FormValue::highWarn, form.highWarn, toSingle);
  record.low = converted(FormValue::low, form.low, toSingle);
  record.lowWarn = converted(FormValue::lowWarn, form.lowWarn, toSingle);
  record.localName = storedLocalName(form.localName);
  record.size = converted(FormValue::outputSize, form.outputSize, toInt32);
  record.propertyName = form.propertyName;
  record.severity =
      converted(FormValue::severity, [&] { return toInt16(strictValue(form.severity)); });
  record.normal = form.normal;
  record.mask = form.mask;
  rowOf(alarmTable, alarmCount++) = std::move(record);
}

void WriteAlarmWatchFile(const ReplaceFile& replace, const Path& file, const AlarmTable& alarmTable,
                         std::int16_t alarmCount) {
  if (alarmCount < 1) return;
  std::string content = headerLine(columns);
  for (const auto& row : liveRows(alarmTable, alarmCount)) {
    if (hasNames(row)) content += dataLine(columns, row);
  }
  replace(file, content);
}

const AlarmWatchRecord* findAlarm(const AlarmTable& alarmTable, std::int16_t alarmCount,
                                  std::string_view lclName, std::string_view prpName) {
  const auto rows = liveRows(alarmTable, alarmCount);
  const auto found = std::find_if(rows.begin(), rows.end(), [&](const AlarmWatchRecord& row) {
    return row.propertyName == prpName && row.localName == lclName;
  });
  return found == rows.end() ? nullptr : &*found;
}

bool PrpIsWatchTable(const AlarmTable& alarmTable, std::int16_t alarmCount,
                     std::string_view prpName) {
  const auto rows = liveRows(alarmTable, alarmCount);
  return std::any_of(rows.begin(), rows.end(),
                     [&](const AlarmWatchRecord& row) { return row.propertyName == prpName; });
}

}  // namespace kova
