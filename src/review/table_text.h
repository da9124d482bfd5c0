// SPDX-License-Identifier: MIT
// A table as it stands in its file: where each field begins and what its column is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tables/column_facts.h"
#include "tables/export_table.h"

namespace kova {

enum class TableKind : std::uint8_t { exports, history, alarms, devices, none };

/// What a file of a project is by its name.
TableKind kindOfFile(std::string_view name);
/// Columns that the wizard knows in a table of this kind, in the order in which it writes them.
std::span<const ColumnFacts> columnsOf(TableKind kind);

/// A field without the blanks around it, and where it begins, from 1.
struct Cell {
  std::string_view text;
  std::size_t column = 1;
};

struct TextRow {
  std::size_t line = 0;  ///< from 1, comments counted
  std::vector<Cell> cells;
};

/// Views into a content, which outlives it.
struct TableText {
  TableKind kind = TableKind::none;
  std::string_view content;
  TextRow header;             ///< line 0 if there is none
  std::vector<TextRow> rows;  ///< up to the first line that is too long for one
  /// Position of each known column among the cells as the reader finds it, -1 if it is not there.
  std::vector<std::int16_t> positions;

  /// The field of a known column; empty if the row has none.
  std::string_view text(const TextRow& row, std::string_view tag) const;
  /// The same with its place: that of the row's end if it has none.
  Cell cell(const TextRow& row, std::string_view tag) const;
  /// The header's cell at this position is one of those that the reader finds.
  bool isKnown(std::size_t position) const;
};

TableText parseTable(TableKind kind, std::string_view content);

/// A field reads as the same value in both texts.
bool readsAlike(FieldKind kind, std::string_view one, std::string_view other);

}  // namespace kova
