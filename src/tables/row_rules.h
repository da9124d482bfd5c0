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

/// Rows are appended by commits only below this count, although a file can fill the table.
inline constexpr std::int16_t appendLimit = 1000;

/// Of a local name this many characters count.
inline constexpr std::size_t localNameLength = 6;

/// Throws Failure if a table with `rows` rows has no room for another one.
inline void checkRoom(std::int16_t rows) {
  if (rows >= tableRows) {
    throw Failure("the table has room for " + std::to_string(tableRows) + " rows");
  }
}

/// A table with room for all its rows, so that none of them ever moves. They take memory only once
/// they are used.
template <class Table>
Table reservedTable() {
  Table table;
  table.reserve(static_cast<std::size_t>(tableRows));
  return table;
}

/// Row `index` of a table, from 0 on. At its first use it comes into being, empty.
template <class Row>
Row& rowOf(std::vector<Row>& table, std::int32_t index) {
  const auto place = static_cast<std::size_t>(index);
  if (place >= table.size()) table.resize(place + 1);
  return table[place];
}

/// The same to look at: an empty row if it was not used yet.
template <class Row>
const Row& rowOf(const std::vector<Row>& table, std::int32_t index) {
  static const Row empty;
  const auto place = static_cast<std::size_t>(index);
  return place < table.size() ? table[place] : empty;
}

/// The rows of a table that count.
template <class Row>
std::span<const Row> liveRows(const std::vector<Row>& table, std::int16_t count) {
  return std::span(table).first(static_cast<std::size_t>(count));
}

/// As much of a local name as a row stores.
inline std::string storedLocalName(std::string_view localName) {
  return std::string(localName.substr(0, localNameLength));
}

}  // namespace kova
