// SPDX-License-Identifier: MIT
#include "review/formatting_differences.h"

#include <algorithm>
#include <cstddef>

#include "core/data_formats.h"
#include "review/line_endings.h"

namespace kova {
namespace {

std::string namesOf(const LineEndings& ends) {
  std::string names;
  const auto add = [&](std::size_t count, const char* name) {
    if (count > 0) names += (names.empty() ? "" : " and ") + std::string(name);
  };
  add(ends.both, "CR LF");
  add(ends.carriageReturns, "CR");
  add(ends.lineFeeds, "LF");
  return names.empty() ? "none" : names;
}

/// Number of comment lines: all lines up to the last row that are neither header nor rows.
std::size_t commentsOf(const TableText& table) {
  const std::size_t last = table.rows.empty() ? table.header.line : table.rows.back().line;
  return last - table.rows.size() - (table.header.line > 0 ? 1 : 0);
}

std::vector<std::string> tagsOf(const TableText& table) {
  std::vector<std::string> tags;
  for (const Cell& cell : table.header.cells) {
    tags.push_back(upperCase(cell.text));
  }
  return tags;
}

bool holds(const std::vector<std::string>& tags, const std::string& tag) {
  return std::find(tags.begin(), tags.end(), tag) != tags.end();
}

void compareColumns(const TableText& before, const TableText& after,
                    std::vector<std::string>& messages) {
  std::vector<std::string> was = tagsOf(before);
  std::vector<std::string> is = tagsOf(after);
  for (const std::string& tag : was) {
    if (!holds(is, tag)) messages.push_back("column \"" + tag + "\" removed");
  }
  for (const std::string& tag : is) {
    if (!holds(was, tag)) messages.push_back("column \"" + tag + "\" added");
  }
  std::erase_if(was, [&](const std::string& tag) { return !holds(is, tag); });
  std::erase_if(is, [&](const std::string& tag) { return !holds(was, tag); });
  if (was != is) messages.emplace_back("column order changed");
}

}  // namespace

std::vector<std::string> formattingDifferences(const TableText& before, const TableText& after) {
  std::vector<std::string> messages;
  const std::string endsBefore = namesOf(countLineEndings(before.content));
  const std::string endsAfter = namesOf(countLineEndings(after.content));
  if (endsBefore != endsAfter) {
    messages.push_back("line endings: " + endsBefore + " -> " + endsAfter);
  }
  const std::size_t was = commentsOf(before);
  const std::size_t is = commentsOf(after);
  if (was != is) {
    messages.push_back("comment lines: " + std::to_string(was) + " -> " + std::to_string(is));
  }
  compareColumns(before, after, messages);
  return messages;
}

}  // namespace kova
