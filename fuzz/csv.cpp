// SPDX-License-Identifier: MIT
// Columns and fields of lines against a plain step-by-step reading of the format's rules.
#include <algorithm>
#include <string>

#include "harness.h"
#include "tables/tagged_csv.h"

namespace kova::fuzz {
namespace {

std::string stripFront(std::string text, const std::string& lineEnd) {
  while (!text.empty()) {
    const bool blank = text[0] == ' ' || text[0] == '\t' || text[0] == '\0';
    if (!blank && text.substr(0, 2) != lineEnd) break;
    text.erase(0, blank ? 1 : 2);
  }
  for (const char end : {'\r', '\n'}) text.erase(0, text.starts_with(end) ? 1 : 0);
  return text;
}

std::string strip(std::string text) {
  text = stripFront(text, "\r\n");
  std::reverse(text.begin(), text.end());
  text = stripFront(text, "\n\r");
  return {text.rbegin(), text.rend()};
}

/// Width of a field behind the first; without end where no comma ends it.
std::size_t followingWidth(const std::string& rest) {
  if (!rest.starts_with('"')) return rest.find(',');
  const auto closing = rest.find('"', 1);
  return closing == std::string::npos ? 1 : closing + 1;
}

int columnOf(std::string rest, std::string tag) {
  for (std::string* text : {&rest, &tag}) {
    for (char& c : *text) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
  }
  auto width = std::min(rest.find(','), rest.size());
  for (int column = 0;; ++column) {
    if (strip(rest.substr(0, width)) == tag || width == 0) return column;
    if (width == rest.size()) return -1;
    rest.erase(0, width + 1);
    width = std::min(followingWidth(rest), rest.size());
  }
}

std::string fieldOf(std::string rest, int column) {
  auto width = rest.find(',');
  for (int index = 0;; ++index) {
    if (index == column) return strip(rest.substr(0, width));
    if (width >= rest.size()) return "";
    rest.erase(0, width + 1);
    width = followingWidth(rest);
  }
}

}  // namespace

void check(std::string_view bytes) {
  const auto cut = std::min(bytes.find(';'), bytes.size());
  const std::string tag(bytes.substr(0, cut));
  const std::string line(bytes.substr(cut));
  require(stripBlanks(line) == strip(line), "blanks go as the rules say");
  require(getCsvColumn(line, tag) == columnOf(line, tag), "a tag has its column");
  CsvFields fields;
  splitCsvLine(line, fields);
  for (std::int16_t column = -1; column < 24; ++column) {
    const std::string expected = fieldOf(line, column);
    require(getCsvField(fields, column) == expected, "a column has its field");
  }
}

}  // namespace kova::fuzz
