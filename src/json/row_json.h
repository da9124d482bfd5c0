// SPDX-License-Identifier: MIT
// Rows of the tables as JSON objects and back: the columns under their keys. Texts are UTF-8.
#pragma once

#include <limits>
#include <string>
#include <type_traits>
#include <variant>

#include "json/json.h"
#include "platform/code_page.h"
#include "platform/failure.h"
#include "tables/columns.h"

namespace kova {

inline Json toJson(const std::string& text, const CodePage& codePage) {
  return codePage.toUtf8(text);
}
template <class Value>
Json toJson(Value value, const CodePage& /*codePage*/) {
  return value;
}

inline void fromJson(const Json& json, std::string& text, const CodePage& codePage) {
  text = codePage.fromUtf8(json.get_ref<const std::string&>());
}
/// Throws Failure for a number that the value can't hold.
template <class Value>
void fromJson(const Json& json, Value& value, const CodePage& /*codePage*/) {
  if constexpr (std::is_integral_v<Value> && !std::is_same_v<Value, bool>) {
    const auto number = json.get<std::int64_t>();
    using Limits = std::numeric_limits<Value>;
    if (!json.is_number_integer() || number < Limits::min() || number > Limits::max()) {
      throw Failure("The number " + json.dump() + " is out of range");
    }
  }
  json.get_to(value);
}

/// Runs `use` with the key and the member of each column that a row keeps.
template <class Row, class Use>
void forEachMember(Use use) {
  for (const Column<Row>& column : tableColumns<Row>) {
    std::visit(
        [&](auto member) {
          if constexpr (!std::is_same_v<decltype(member), std::monostate>) use(column.key, member);
        },
        column.member);
  }
}

template <class Row>
Json columnsJson(const Row& row, const CodePage& codePage) {
  Json json;
  forEachMember<Row>(
      [&](std::string_view key, auto member) { json[key] = toJson(row.*member, codePage); });
  return json;
}

/// Throws a JSON exception for a missing column.
template <class Row>
void readColumns(const Json& json, Row& row, const CodePage& codePage) {
  forEachMember<Row>([&](std::string_view key, auto member) {
    fromJson(json.at(std::string(key)), row.*member, codePage);
  });
}

}  // namespace kova
