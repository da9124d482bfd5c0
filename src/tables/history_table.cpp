// SPDX-License-Identifier: MIT
#include "tables/history_table.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "tables/columns.h"
#include "tables/row_rules.h"

namespace kova {

namespace {

constexpr auto columns = std::to_array<Column<HistoryRecord>>({
    {"Index", &HistoryRecord::index},
    {"Export Name", &HistoryRecord::exportName},
    {"Local Name", &HistoryRecord::localName},
    {"Property", &HistoryRecord::propertyName},
    {"Device", &HistoryRecord::device},
    {"Data Length", &HistoryRecord::dataLength},
    {"Format", &HistoryRecord::format},
    {"Heartbeat", &HistoryRecord::heartbeat},
    {"Polling Rate", &HistoryRecord::pollingRate},
    {"Archive Rate", &HistoryRecord::archiveRate},
    {"Tolerance", &HistoryRecord::tolerance},
    {"Short Depth", &HistoryRecord::shortDepth},
    {"Long Depth", &HistoryRecord::longDepth},
});

std::int16_t freeIndex(std::int32_t nextIndex) {
  if (nextIndex > std::numeric_limits<std::int16_t>::max()) {
    throw Failure("the history table has no free index");
  }
  return static_cast<std::int16_t>(nextIndex);
}

// The row that is only written, for the property that stands in the form.
std::string formLine(const HistoryForm& form, std::int32_t nextIndex) {
  std::array fields = {std::to_string(freeIndex(nextIndex)),
                       form.exportName,
                       storedLocalName(form.localName),
                       form.propertyName,
                       form.device,
                       form.outputSize,
                       form.tableFormat,
                       form.heartbeat,
                       form.pollingRate,
                       form.archiveRate,
                       form.tolerance,
                       form.shortDepth,
                       form.longDepth};
  static_assert(fields.size() == columns.size());
  for (std::size_t k = 0; k < fields.size(); ++k) {
    const auto& column = columns.at(k);
    if (std::holds_alternative<std::string HistoryRecord::*>(column.member)) continue;
    try {
      fields.at(k) = signedNumberText(fields.at(k));
    } catch (const Failure& failure) {
      throw Failure(std::string(column.tag) + ": " + failure.what());
    }
  }
  return csvLine(fields);
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

std::span<const ColumnFacts> historyColumns() {
  static constexpr auto facts = factsOf(columns);
  return facts;
}

ReadResult ReadHistoryFile(const FileSystem& files, const Path& file, HistoryTable& historyTable,
                           std::int16_t& historyCount) {
  RowReader reader(columns);
  ReadResult result = readTable(
      files, file, [&](std::string_view header) { reader.findColumns(header); },
      [&](const CsvFields& fields, std::int16_t rows) {
        checkRoom(rows);
        reader.fill(rowOf(historyTable, rows), fields);
        return true;
      });
  historyCount = result.rows;
  return result;
}

void AppendHistoryFile(HistoryTable& historyTable, std::int16_t& historyCount,
                       const HistoryForm& form) {
  const HistorySlot slot = findHistorySlot(historyTable, historyCount, form);
  if (slot.exists || historyCount >= appendLimit) return;
  HistoryRecord record;
  record.index =
      converted(FormValue::historyIndex, [&] { return freeIndex(std::max(slot.nextIndex, 1)); });
  record.archiveRate = converted(FormValue::archiveRate, form.archiveRate, toInt32);
  record.device = form.device;
  record.exportName = form.exportName;
  record.localName = storedLocalName(form.localName);
  record.format = form.singleValueFormat;
  record.heartbeat = converted(FormValue::heartbeat, form.heartbeat, toInt32);
  record.dataLength = converted(FormValue::outputSize, form.outputSize, toInt32);
  record.longDepth = converted(FormValue::longDepth, form.longDepth, toInt32);
  record.shortDepth = converted(FormValue::shortDepth, form.shortDepth, toInt32);
  record.propertyName = form.propertyName;
  record.pollingRate = converted(FormValue::pollingRate, form.pollingRate, toInt32);
  record.tolerance = form.tolerance;
  rowOf(historyTable, historyCount++) = std::move(record);
}

void WriteHistoryFile(const ReplaceFile& replace, const Path& file,
                      const HistoryTable& historyTable, std::int16_t historyCount,
                      const HistoryForm& form) {
  std::string content = headerLine(columns);
  for (const auto& row : liveRows(historyTable, historyCount)) content += dataLine(columns, row);
  const HistorySlot slot = findHistorySlot(historyTable, historyCount, form);
  if (!slot.exists) content += formLine(form, slot.nextIndex);
  replace(file, content);
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
