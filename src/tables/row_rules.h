// SPDX-License-Identifier: MIT
// What the rows of all tables have in common.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "tables/number_text.h"
#include "tables/tagged_csv.h"
#include "tables/value_failure.h"

namespace kova {

/// Throws Failure if a table with `rows` rows has no room for another one.
inline void checkRoom(std::int16_t rows) {
  if (rows >= tableRows) {
    throw Failure("the table has room for " + std::to_string(tableRows) + " rows");
  }
}

/// As much of a local name as a row stores.
inline std::string storedLocalName(std::string_view localName) {
  return std::string(localName.substr(0, 6));
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

}  // namespace kova
