// SPDX-License-Identifier: MIT
// The columns of a table as data: one way to read its rows and one to write them.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

#include "tables/column_facts.h"
#include "tables/number_text.h"
#include "tables/tagged_csv.h"

namespace kova {

/// What a column holds of a row; nothing if it is written and never read.
template <class Row>
using Member = std::variant<std::monostate, std::string Row::*, std::int16_t Row::*,
                            std::int32_t Row::*, float Row::*>;

/// One column of a table.
template <class Row>
struct Column {
  std::string_view tag;  ///< its name in the header that is written
  Member<Row> member;
  /// Names by which foreign tables call it, looked for ahead of `tag`.
  std::array<std::string_view, 2> otherTags{};
  bool staysIfMissing = false;  ///< then a row keeps what it held; else it reads an empty field
  bool mayBeMissing = staysIfMissing;
  bool holdsNumber = false;  ///< also as a text
};

/// The columns of a table, in the order in which they are written.
template <class Row, std::size_t count>
using Columns = std::array<Column<Row>, count>;

template <class Row>
constexpr FieldKind kindOf(const Column<Row>& column) {
  switch (column.member.index()) {
    case 0:
      return FieldKind::made;
    case 1:
      return column.holdsNumber ? FieldKind::numberText : FieldKind::text;
    case 4:
      return FieldKind::single;
    default:
      return FieldKind::whole;
  }
}

template <class Row, std::size_t count>
constexpr std::array<ColumnFacts, count> factsOf(const Columns<Row, count>& columns) {
  std::array<ColumnFacts, count> facts;
  std::transform(columns.begin(), columns.end(), facts.begin(), [](const Column<Row>& column) {
    return ColumnFacts{column.tag, column.otherTags, kindOf(column), column.mayBeMissing};
  });
  return facts;
}

/// Fills rows from the lines of a file that has its columns in an order of its own.
template <class Row, std::size_t count>
class RowReader {
 public:
  /// `columns` outlive the reader.
  explicit RowReader(const Columns<Row, count>& columns) : columns_(columns) {}

  /// Finds the columns in the header line.
  void findColumns(std::string_view header) {
    std::transform(columns_.begin(), columns_.end(), positions_.begin(), [&](const auto& column) {
      for (const std::string_view tag : column.otherTags) {
        const std::int16_t position = tag.empty() ? std::int16_t{-1} : getCsvColumn(header, tag);
        if (position >= 0) return position;
      }
      return getCsvColumn(header, column.tag);
    });
  }

  /// Throws Failure where a number does not fit; the members ahead of it are filled then.
  void fill(Row& row, const CsvFields& fields) const {
    for (std::size_t index = 0; index < count; ++index) {
      if (positions_[index] < 0 && columns_[index].staysIfMissing) continue;
      const std::string_view text = getCsvField(fields, positions_[index]);
      read(row, columns_[index].member, text);
    }
  }

  /// Field of the column that holds `member`.
  std::string_view field(const CsvFields& fields, Member<Row> member) const {
    const auto column = std::find_if(columns_.begin(), columns_.end(),
                                     [&](const auto& one) { return one.member == member; });
    return getCsvField(fields, positions_.at(static_cast<std::size_t>(column - columns_.begin())));
  }

 private:
  static void read(Row& row, const Member<Row>& member, std::string_view text) {
    if (const auto* string = std::get_if<std::string Row::*>(&member)) {
      row.*(*string) = text;
    } else if (const auto* whole = std::get_if<std::int32_t Row::*>(&member)) {
      row.*(*whole) = toInt32(textValue(text));
    } else if (const auto* small = std::get_if<std::int16_t Row::*>(&member)) {
      row.*(*small) = toInt16(textValue(text));
    } else if (const auto* single = std::get_if<float Row::*>(&member)) {
      row.*(*single) = toSingle(textValue(text));
    }
  }

  const Columns<Row, count>& columns_;
  std::array<std::int16_t, count> positions_{};
};

/// Header line of a table with its line end.
template <class Row, std::size_t count>
std::string headerLine(const Columns<Row, count>& columns) {
  std::array<std::string, count> tags;
  std::transform(columns.begin(), columns.end(), tags.begin(),
                 [](const auto& column) { return std::string(column.tag); });
  return csvLine(tags);
}

/// Data line of a row with its line end. `made` stands in the column that is never read.
template <class Row, std::size_t count>
std::string dataLine(const Columns<Row, count>& columns, const Row& row,
                     const std::string& made = {}) {
  std::array<std::string, count> fields;
  std::transform(columns.begin(), columns.end(), fields.begin(), [&](const auto& column) {
    const auto written = [&](auto member) -> std::string {
      if constexpr (std::is_same_v<decltype(member), std::monostate>) {
        return made;
      } else if constexpr (std::is_same_v<decltype(member), std::string Row::*>) {
        return row.*member;
      } else {
        return signedNumberText(row.*member);
      }
    };
    return std::visit(written, column.member);
  });
  return csvLine(fields);
}

}  // namespace kova
