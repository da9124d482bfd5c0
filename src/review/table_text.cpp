// SPDX-License-Identifier: MIT
#include "review/table_text.h"

#include <algorithm>
#include <cmath>

#include "tables/alarm_table.h"
#include "tables/device_files.h"
#include "tables/export_table.h"
#include "tables/history_table.h"
#include "tables/number_text.h"

namespace kova {
namespace {

TextRow rowOf(std::string_view line, std::size_t number) {
  CsvFields fields;
  splitCsvLine(line, fields);
  TextRow row{number, {}};
  row.cells.reserve(fields.size());
  for (const std::string_view field : fields) {
    row.cells.push_back({field, static_cast<std::size_t>(field.data() - line.data()) + 1});
  }
  return row;
}

std::vector<std::int16_t> positionsIn(TableKind kind, std::string_view header) {
  std::vector<std::int16_t> positions;
  for (const ColumnFacts& column : columnsOf(kind)) {
    positions.push_back(positionIn(header, column));
  }
  return positions;
}

std::int16_t positionOf(const TableText& table, std::string_view tag) {
  const auto columns = columnsOf(table.kind);
  const auto column = std::find_if(columns.begin(), columns.end(),
                                   [&](const ColumnFacts& facts) { return facts.tag == tag; });
  const auto index = static_cast<std::size_t>(column - columns.begin());
  return index < table.positions.size() ? table.positions[index] : std::int16_t{-1};
}

}  // namespace

TableKind kindOfFile(std::string_view name) {
  if (name == exportsFileName) return TableKind::exports;
  if (name == historyFileName) return TableKind::history;
  if (name == alarmFileName) return TableKind::alarms;
  const bool names =
      name == serverDevicesFile || name.ends_with(devicesEnding) || name.ends_with(namesEnding);
  return names ? TableKind::devices : TableKind::none;
}

std::span<const ColumnFacts> columnsOf(TableKind kind) {
  switch (kind) {
    case TableKind::exports:
      return exportColumns();
    case TableKind::history:
      return historyColumns();
    case TableKind::alarms:
      return alarmColumns();
    case TableKind::devices:
      return deviceColumns();
    case TableKind::none:
      break;
  }
  return {};
}

Cell TableText::cell(const TextRow& row, std::string_view tag) const {
  const auto position = static_cast<std::size_t>(positionOf(*this, tag));
  if (position < row.cells.size()) return row.cells[position];
  if (row.cells.empty()) return {};
  return {{}, row.cells.back().column + row.cells.back().text.size()};
}

std::string_view TableText::text(const TextRow& row, std::string_view tag) const {
  return cell(row, tag).text;
}

bool TableText::isKnown(std::size_t position) const {
  return std::find(positions.begin(), positions.end(), position) != positions.end();
}

TableText parseTable(TableKind kind, std::string_view content) {
  TableText table{.kind = kind, .content = content, .header = {}, .rows = {}, .positions = {}};
  TableLines lines(content);
  try {
    while (const auto line = lines.next()) {
      if (table.header.line == 0) {
        table.header = rowOf(*line, lines.number());
        table.positions = positionsIn(kind, *line);
      } else {
        table.rows.push_back(rowOf(*line, lines.number()));
      }
    }
  } catch (const Failure&) {
    return table;  // the readers stop there too, and report why
  }
  return table;
}

bool readsAlike(FieldKind kind, std::string_view one, std::string_view other) {
  if (one == other) return true;
  if (kind == FieldKind::whole) {
    return std::nearbyint(textValue(one)) == std::nearbyint(textValue(other));
  }
  return kind == FieldKind::single &&
         static_cast<float>(textValue(one)) == static_cast<float>(textValue(other));
}

}  // namespace kova
