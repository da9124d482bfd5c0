// SPDX-License-Identifier: MIT
// What the rows of all tables have in common.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tables/tagged_csv.h"

namespace kova {

/// Commits append rows only below this count, although a file can fill the table.
inline constexpr std::int16_t appendLimit = 1000;

/// Number of significant characters of a local name.
inline constexpr std::size_t localNameLength = 6;

/// Throws Failure if a table with `rows` rows is full.
inline void checkRoom(std::int16_t rows) {
  if (rows >= tableRows) {
    throw Failure("the table has room for " + std::to_string(tableRows) + " rows");
  }
}

/// A table with capacity for all its rows, so that rows never move in memory. Unused rows take
/// address space only.
template <class Table>
Table reservedTable() {
  Table table;
  table.reserve(static_cast<std::size_t>(tableRows));
  return table;
}

/// Row `index` (from 0) of a table. Creates it, empty, at its first use.
template <class Row>
Row& rowOf(std::vector<Row>& table, std::int32_t index) {
  const auto place = static_cast<std::size_t>(index);
  if (place >= table.size()) table.resize(place + 1);
  return table[place];
}

/// The same, read-only: an empty row if it has not been used.
template <class Row>
const Row& rowOf(const std::vector<Row>& table, std::int32_t index) {
  static const Row empty;
  const auto place = static_cast<std::size_t>(index);
  return place < table.size() ? table[place] : empty;
}

/// The active rows of a table.
template <class Row>
std::span<const Row> liveRows(const std::vector<Row>& table, std::int16_t count) {
  return std::span(table).first(static_cast<std::size_t>(count));
}

/// A copy of the active rows.
template <class Row>
std::vector<Row> activeRows(const std::vector<Row>& table, std::int16_t count) {
  const auto rows = liveRows(table, count);
  return {rows.begin(), rows.end()};
}

/// The part of a local name that a row stores.
inline std::string storedLocalName(std::string_view localName) {
  return std::string(localName.substr(0, localNameLength));
}

}  // namespace kova
