// SPDX-License-Identifier: MIT
// What the rows of all tables have in common.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tables/number_text.h"
#include "tables/tagged_csv.h"
#include "tables/value_failure.h"

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

/// The rows of a table that are in use.
template <class Row>
std::span<const Row> liveRows(const std::vector<Row>& table, std::int16_t count) {
  return std::span(table).first(static_cast<std::size_t>(count));
}

/// As much of a local name as a row stores.
inline std::string storedLocalName(std::string_view localName) {
  return std::string(localName.substr(0, localNameLength));
}

/// Result of `convert`; a Failure within is told as that of `value`.
template <class Convert>
auto converted(FormValue value, Convert convert) {
  try {
    return convert();
  } catch (const Failure& failure) {
    throw ValueFailure(value, failure.what());
  }
}

/// The leading number of a form's text as `convert` makes it.
template <class Convert>
auto converted(FormValue value, const std::string& text, Convert convert) {
  return converted(value, [&] { return convert(textValue(text)); });
}

}  // namespace kova
