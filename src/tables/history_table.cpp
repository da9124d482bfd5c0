// SPDX-License-Identifier: MIT
#include "tables/history_table.h"

#include <algorithm>
#include <array>
#include <limits>
#include <span>

#include "tables/row_rules.h"

namespace kova {

namespace {

// In the order of the file.
enum Column {
  index,
  exportName,
  localName,
  property,
  device,
  dataLength,
  format,
  heartbeat,
  pollingRate,
  archiveRate,
  tolerance,
  shortDepth,
  longDepth
};

constexpr std::array<std::string_view, 13> columnNames{
    "Index",       "Export Name", "Local Name", "Property",     "Device",
    "Data Length", "Format",      "Heartbeat",  "Polling Rate", "Archive Rate",
    "Tolerance",   "Short Depth", "Long Depth"};

using Positions = std::array<std::int16_t, columnNames.size()>;
using Fields = std::array<std::string, columnNames.size()>;

std::span<const HistoryRecord> liveRows(const HistoryTable& table, std::int16_t count) {
  return std::span(table).first(static_cast<std::size_t>(count));
}

void fill(HistoryRecord& record, const CsvFields& fields, const Positions& positions) {
  const auto text = [&](Column column) { return fields[positions.at(column)]; };
  const auto number = [&](Column column) { return toInt32(textValue(text(column))); };
  record.index = toInt16(textValue(text(index)));
  record.exportName = text(exportName);
  record.localName = text(localName);
  record.propertyName = text(property);
  record.device = text(device);
  record.dataLength = number(dataLength);
  record.format = text(format);
  record.heartbeat = number(heartbeat);
  record.pollingRate = number(pollingRate);
  record.archiveRate = number(archiveRate);
  record.tolerance = text(tolerance);
  record.shortDepth = number(shortDepth);
  record.longDepth = number(longDepth);
}

std::string dataLine(const HistoryRecord& row) {
  return csvLine(Fields{signedNumberText(row.index), row.exportName, row.localName,
                        row.propertyName, row.device, signedNumberText(row.dataLength), row.format,
                        signedNumberText(row.heartbeat), signedNumberText(row.pollingRate),
                        signedNumberText(row.archiveRate), row.tolerance,
                        signedNumberText(row.shortDepth), signedNumberText(row.longDepth)});
}

std::int16_t freeIndex(std::int32_t nextIndex) {
  if (nextIndex > std::numeric_limits<std::int16_t>::max()) {
    throw Failure("the history table has no free index");
  }
  return static_cast<std::int16_t>(nextIndex);
}

// The row that is only written, for the property that stands in the form.
std::string formLine(const HistoryForm& form, std::int32_t nextIndex) {
  const auto number = [](Column column, const std::string& text) {
    try {
      return signedNumberText(text);
    } catch (const Failure& failure) {
      throw Failure(std::string(columnNames.at(column)) + ": " + failure.what());
    }
  };
  return csvLine(Fields{signedNumberText(freeIndex(nextIndex)), form.exportName,
                        storedLocalName(form.localName), form.propertyName, form.device,
                        number(dataLength, form.outputSize), form.tableFormat,
                        number(heartbeat, form.heartbeat), number(pollingRate, form.pollingRate),
                        number(archiveRate, form.archiveRate), form.tolerance,
                        number(shortDepth, form.shortDepth), number(longDepth, form.longDepth)});
}

std::string headerLine() {
  Fields names;
  std::copy(columnNames.begin(), columnNames.end(), names.begin());
  return csvLine(names);
}

// Where a row of the form would go.
struct HistorySlot {
  bool exists = false;         // a row has the form's three names
  std::int32_t nextIndex = 0;  // one above the highest index, 0 in an empty table
};

HistorySlot findHistorySlot(const HistoryTable& historyTable, std::int16_t historyCount,
                            const HistoryForm& form) {
  HistorySlot slot;
  for (const auto& row : liveRows(historyTable, historyCount)) {
    if (row.index >= slot.nextIndex) slot.nextIndex = row.index + 1;
    slot.exists =
        slot.exists || (row.propertyName == form.propertyName && row.localName == form.localName &&
                        row.exportName == form.exportName);
  }
  return slot;
}

}  // namespace

ReadResult ReadHistoryFile(const FileSystem& files, const Path& file, HistoryTable& historyTable,
                           std::int16_t& historyCount) {
  ReadResult result;
  Positions positions{};
  result.stop = readTable(
      files, file,
      [&](std::string_view line) {
        std::transform(columnNames.begin(), columnNames.end(), positions.begin(),
                       [&](std::string_view name) { return getCsvColumn(line, name); });
      },
      [&](const CsvFields& fields) {
        checkRoom(result.rows);
        fill(historyTable.at(static_cast<std::size_t>(result.rows)), fields, positions);
        ++result.rows;
      });
  historyCount = result.rows;
  return result;
}

std::optional<HistoryRecord> newHistoryRecord(const HistoryTable& historyTable,
                                              std::int16_t historyCount, const HistoryForm& form) {
  const HistorySlot slot = findHistorySlot(historyTable, historyCount, form);
  if (slot.exists || historyCount >= appendLimit) return std::nullopt;
  const auto number = [](FormValue value, const std::string& text) {
    return converted(value, [&] { return toInt32(textValue(text)); });
  };
  HistoryRecord record;
  record.index =
      converted(FormValue::historyIndex, [&] { return freeIndex(std::max(slot.nextIndex, 1)); });
  record.archiveRate = number(FormValue::archiveRate, form.archiveRate);
  record.device = form.device;
  record.exportName = form.exportName;
  record.localName = storedLocalName(form.localName);
  record.format = form.singleValueFormat;
  record.heartbeat = number(FormValue::heartbeat, form.heartbeat);
  record.dataLength = number(FormValue::outputSize, form.outputSize);
  record.longDepth = number(FormValue::longDepth, form.longDepth);
  record.shortDepth = number(FormValue::shortDepth, form.shortDepth);
  record.propertyName = form.propertyName;
  record.pollingRate = number(FormValue::pollingRate, form.pollingRate);
  record.tolerance = form.tolerance;
  return record;
}

void WriteHistoryFile(FileSystem& files, const Path& file, const HistoryTable& historyTable,
                      std::int16_t historyCount, const HistoryForm& form) {
  std::string content = headerLine();
  for (const auto& row : liveRows(historyTable, historyCount)) content += dataLine(row);
  const HistorySlot slot = findHistorySlot(historyTable, historyCount, form);
  if (!slot.exists) content += formLine(form, slot.nextIndex);
  replace(files, file, content);
}

const HistoryRecord* findHistory(const HistoryTable& historyTable, std::int16_t historyCount,
                                 std::string_view expName, std::string_view prpName) {
  const auto rows = liveRows(historyTable, historyCount);
  const auto found = std::find_if(rows.begin(), rows.end(), [&](const HistoryRecord& row) {
    return row.propertyName == prpName && row.exportName == expName;
  });
  return found == rows.end() ? nullptr : &*found;
}

bool PrpIsInHistoryTable(const HistoryTable& historyTable, std::int16_t historyCount,
                         std::string_view expName, std::string_view prpName) {
  return findHistory(historyTable, historyCount, expName, prpName) != nullptr;
}

}  // namespace kova
