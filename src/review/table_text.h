// SPDX-License-Identifier: MIT
// A table as it is in its file: the place of each field and its column.
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

/// The kind of a file, by its name.
TableKind kindOfFile(std::string_view name);
/// Known columns of a table of this kind, in the order of writing.
std::span<const ColumnFacts> columnsOf(TableKind kind);

/// A field without the spaces around it, and the column where it starts, from 1.
struct Cell {
  std::string_view text;
  std::size_t column = 1;
};

struct TextRow {
  std::size_t line = 0;  ///< from 1, comments included
  std::vector<Cell> cells;
};

/// Views into a content that outlives it.
struct TableText {
  TableKind kind = TableKind::none;
  std::string_view content;
  TextRow header;             ///< line 0 if there is none
  std::vector<TextRow> rows;  ///< up to the first line that is too long
  /// Cell at which the reader finds each known column, -1 if it finds none.
  std::vector<std::int16_t> positions;

  /// The field of a known column; empty if the row has none.
  std::string_view text(const TextRow& row, std::string_view tag) const;
  /// The same with its place, or the end of the row if it has none.
  Cell cell(const TextRow& row, std::string_view tag) const;
  /// The reader uses the column at this position of the header.
  bool isKnown(std::size_t position) const;
};

TableText parseTable(TableKind kind, std::string_view content);

/// Both texts read as the same value.
bool readsAlike(FieldKind kind, std::string_view one, std::string_view other);

}  // namespace kova
