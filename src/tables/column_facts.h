// SPDX-License-Identifier: MIT
// The columns of a table, for code that checks its file without making rows.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "tables/tagged_csv.h"

namespace kova {

/// What a field of a column becomes when it is read.
enum class FieldKind : std::uint8_t {
  text,
  numberText,  ///< a text that should be a number
  whole,
  single,
  made  ///< generated at each writing, never read
};

struct ColumnFacts {
  std::string_view tag;
  std::array<std::string_view, 2> otherTags{};
  FieldKind kind = FieldKind::text;
  bool mayBeMissing = false;  ///< a project is complete without it
};

/// Position of a column in a header, -1 if it is missing. The other tags take precedence.
template <class Column>
std::int16_t positionIn(std::string_view header, const Column& column) {
  for (const std::string_view tag : column.otherTags) {
    const std::int16_t position = tag.empty() ? std::int16_t{-1} : getCsvColumn(header, tag);
    if (position >= 0) return position;
  }
  return getCsvColumn(header, column.tag);
}

}  // namespace kova
