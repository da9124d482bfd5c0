// SPDX-License-Identifier: MIT
#include "tables/alarm_table.h"

#include <algorithm>
#include <array>
#include <span>

#include "tables/row_rules.h"

namespace kova {

namespace {

// In the order of the file.
enum Column {
  localName,
  device,
  property,
  size,
  format,
  severity,
  alarmSystem,
  high,
  low,
  highWarn,
  lowWarn,
  mask,
  normal
};

constexpr std::size_t columnCount = normal + 1;

constexpr std::array<std::string_view, columnCount> columnNames{
    "LocalName", "DeviceName", "property", "size",    "Format", "severity", "alarmSystem",
    "HIGH",      "LOW",        "HIGHWARN", "LOWWARN", "MASK",   "NORMAL"};

// The names by which foreign tables call the columns, the first that is there counts.
constexpr std::array<std::array<std::string_view, 3>, columnCount> columnTags{{
    {"LOCAL NAME", "LOCAL_NAME", "LOCALNAME"},
    {"DEVICE", "DEVICENAME"},
    {"PROPERTY"},
    {"SIZE"},
    {"FORMAT"},
    {"SEVERITY"},
    {"ALARMSYSTEM"},
    {"HIGH"},
    {"LOW"},
    {"HIGHWARN"},
    {"LOWWARN"},
    {"MASK"},
    {"NORMAL"},
}};

using Positions = std::array<std::int16_t, columnCount>;
using Fields = std::array<std::string, columnCount>;

std::span<const AlarmWatchRecord> liveRows(const AlarmTable& table, std::int16_t count) {
  return std::span(table).first(static_cast<std::size_t>(count));
}

bool hasNames(const AlarmWatchRecord& row) {
  return !row.propertyName.empty() && !row.localName.empty();
}

std::int16_t columnOf(std::string_view line, std::span<const std::string_view> tags) {
  for (const auto tag : tags) {
    const std::int16_t column = tag.empty() ? std::int16_t{-1} : getCsvColumn(line, tag);
    if (column >= 0) return column;
  }
  return -1;
}

void fill(AlarmWatchRecord& record, const CsvFields& fields, const Positions& positions) {
  const auto has = [&](Column column) { return positions.at(column) >= 0; };
  const auto text = [&](Column column) { return fields[positions.at(column)]; };
  const auto number = [&](Column column) { return textValue(text(column)); };
  record.localName = text(localName);
  record.propertyName = text(property);
  record.device = text(device);
  record.size = toInt32(number(size));
  record.format = text(format);
  record.severity = toInt16(number(severity));
  record.alarmSystem = toInt16(number(alarmSystem));
  if (has(high)) record.high = toSingle(number(high));
  if (has(low)) record.low = toSingle(number(low));
  if (has(highWarn)) record.highWarn = toSingle(number(highWarn));
  if (has(lowWarn)) record.lowWarn = toSingle(number(lowWarn));
  if (has(mask)) record.mask = text(mask);
  if (has(normal)) record.normal = text(normal);
}

std::string dataLine(const AlarmWatchRecord& row) {
  return csvLine(Fields{row.localName, row.device, row.propertyName, signedNumberText(row.size),
                        row.format, signedNumberText(row.severity),
                        signedNumberText(row.alarmSystem), signedNumberText(row.high),
                        signedNumberText(row.low), signedNumberText(row.highWarn),
                        signedNumberText(row.lowWarn), row.mask, row.normal});
}

std::string headerLine() {
  Fields names;
  std::copy(columnNames.begin(), columnNames.end(), names.begin());
  return csvLine(names);
}

}  // namespace

ReadResult ReadAlarmWatchFile(const FileSystem& files, const Path& file, AlarmTable& alarmTable,
                              std::int16_t& alarmCount) {
  ReadResult result;
  Positions positions{};
  result.stop = readTable(
      files, file,
      [&](std::string_view line) {
        std::transform(columnTags.begin(), columnTags.end(), positions.begin(),
                       [&](const auto& tags) { return columnOf(line, tags); });
      },
      [&](const CsvFields& fields) {
        // A line without names takes no row, also where there is none left.
        const bool named =
            !fields[positions.at(property)].empty() && !fields[positions.at(localName)].empty();
        if (!named && result.rows >= tableRows) return;
        checkRoom(result.rows);
        fill(alarmTable.at(static_cast<std::size_t>(result.rows)), fields, positions);
        if (named) ++result.rows;
      });
  alarmCount = result.rows;
  return result;
}

std::optional<AlarmWatchRecord> newAlarmRecord(std::int16_t alarmCount, const AlarmForm& form) {
  if (alarmCount >= appendLimit) return std::nullopt;
  const auto whole = [](FormValue value, const std::string& text) {
    return converted(value, [&] { return toInt16(textValue(text)); });
  };
  const auto single = [](FormValue value, const std::string& text) {
    return converted(value, [&] { return toSingle(textValue(text)); });
  };
  AlarmWatchRecord record;
  record.alarmSystem = whole(FormValue::alarmSystem, form.alarmSystem);
  record.countThreshold = whole(FormValue::countThreshold, form.countThreshold);
  record.device = form.device;
  record.format = form.format;
  record.high = single(FormValue::high, form.high);
  record.highWarn = single(FormValue::highWarn, form.highWarn);
  record.low = single(FormValue::low, form.low);
  record.lowWarn = single(FormValue::lowWarn, form.lowWarn);
  record.localName = storedLocalName(form.localName);
  record.size =
      converted(FormValue::outputSize, [&] { return toInt32(textValue(form.outputSize)); });
  record.propertyName = form.propertyName;
  record.severity =
      converted(FormValue::severity, [&] { return toInt16(strictValue(form.severity)); });
  record.normal = form.normal;
  record.mask = form.mask;
  return record;
}

void WriteAlarmWatchFile(FileSystem& files, const Path& file, const AlarmTable& alarmTable,
                         std::int16_t alarmCount) {
  if (alarmCount < 1) return;
  std::string content = headerLine();
  for (const auto& row : liveRows(alarmTable, alarmCount)) {
    if (hasNames(row)) content += dataLine(row);
  }
  replace(files, file, content);
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
