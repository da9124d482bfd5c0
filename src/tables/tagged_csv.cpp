// SPDX-License-Identifier: MIT
#include "tables/tagged_csv.h"

#include <algorithm>
#include <limits>
#include <new>
#include <utility>

namespace kova {

namespace {

constexpr std::size_t largestColumn = std::numeric_limits<std::int16_t>::max();

// White space and line endings are not above the space.
bool isPrinted(char character) {
  return static_cast<unsigned char>(character) > ' ';
}

bool isBlank(char character) {
  return character == ' ' || character == '\t' || character == '\0';
}

char upperCase(char character) {
  return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A')
                                              : character;
}

bool equalsFolded(std::string_view one, std::string_view other) {
  return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                    [](char left, char right) { return upperCase(left) == upperCase(right); });
}

// Fields are short: a plain loop is faster than a search optimised for long texts.
std::size_t widthToComma(std::string_view rest) {
  std::size_t width = 0;
  while (width < rest.size() && rest[width] != ',') ++width;
  return width;
}

// Quotes count from the second field on; an unclosed quote is a field of its own.
std::size_t widthOfFollowing(std::string_view rest) {
  if (!rest.starts_with('"')) return widthToComma(rest);
  const auto closing = rest.find('"', 1);
  return closing == std::string_view::npos ? 1 : closing + 1;
}

// Calls `visit` with each field of a line until it returns false. Any character after a field is
// its separator.
template <class Visit>
void visitFields(std::string_view line, Visit visit) {
  std::size_t width = widthToComma(line);
  while (visit(line.substr(0, width)) && width < line.size()) {
    line.remove_prefix(width + 1);
    width = widthOfFollowing(line);
  }
}

std::string_view strippedBothEnds(std::string_view text) {
  constexpr std::string_view lineEnd = "\r\n";
  while (!text.empty() && (isBlank(text.front()) || text.starts_with(lineEnd))) {
    text.remove_prefix(isBlank(text.front()) ? 1 : lineEnd.size());
  }
  if (text.starts_with('\r')) text.remove_prefix(1);
  if (text.starts_with('\n')) text.remove_prefix(1);
  while (!text.empty() && (isBlank(text.back()) || text.ends_with(lineEnd))) {
    text.remove_suffix(isBlank(text.back()) ? 1 : lineEnd.size());
  }
  if (text.ends_with('\r')) text.remove_suffix(1);
  if (text.ends_with('\n')) text.remove_suffix(1);
  return text;
}

bool hasOnlyLineFeeds(std::string_view content) {
  return content.find('\r') == std::string_view::npos &&
         content.find('\n') != std::string_view::npos;
}

// Removes the first line from `content`. Throws Failure if it is too long.
std::string_view takeLine(std::string_view& content) {
  const auto end = content.find('\r');
  if (std::min(end, content.size()) > longestLine) {
    throw Failure("the line is longer than " + std::to_string(longestLine) + " characters");
  }
  if (end == std::string_view::npos) return std::exchange(content, {});
  const auto line = content.substr(0, end);
  content.remove_prefix(end + 1);
  if (content.starts_with('\n')) content.remove_prefix(1);
  return line;
}

ReadResult notOpened(std::string_view why) {
  ReadResult result;
  result.stop = ReadStop{0, std::string(why)};
  return result;
}

}  // namespace

std::int16_t getCsvColumn(std::string_view line, std::string_view tag) {
  std::size_t column = 0;
  bool found = false;
  visitFields(line, [&](std::string_view field) {
    found = field.empty() || equalsFolded(stripBlanks(field), tag);
    if (!found) ++column;
    return !found && column <= largestColumn;
  });
  return found ? static_cast<std::int16_t>(column) : std::int16_t{-1};
}

bool isCommentSign(char sign) {
  return std::string_view(";%#").find(sign) != std::string_view::npos;
}

std::string_view stripBlanks(std::string_view text) {
  // Fast path: usually there is at most the space before a number.
  if (text.starts_with(' ')) text.remove_prefix(1);
  const bool bare = text.empty() || (isPrinted(text.front()) && isPrinted(text.back()));
  return bare ? text : strippedBothEnds(text);
}

void splitCsvLine(std::string_view line, CsvFields& fields) {
  fields.clear();
  visitFields(line, [&](std::string_view field) {
    fields.push_back(stripBlanks(field));
    return fields.size() <= largestColumn;
  });
}

std::optional<std::string_view> TableLines::next() {
  for (;;) {
    ++number_;
    if (rest_.empty()) return std::nullopt;
    const auto line = takeLine(rest_);
    if (line.empty() || !isCommentSign(line.front())) return line;
  }
}

ReadResult readTable(std::string_view content, const std::function<void(std::string_view)>& header,
                     const TakeRow& row) {
  constexpr std::size_t first = 1;
  ReadResult result;
  TableLines lines(content);
  try {
    if (content.empty()) throw Failure("the file is empty");
    result.onlyLineFeeds = hasOnlyLineFeeds(content);
    if (const auto line = lines.next()) header(*line);
    CsvFields fields;
    while (const auto line = lines.next()) {
      splitCsvLine(*line, fields);
      if (row(fields, result.rows)) {
        ++result.rows;
        result.lines.push_back(lines.number());
      } else {
        ++result.skipped;
      }
    }
  } catch (const Failure& failure) {
    result.stop = ReadStop{std::max(first, lines.number()), failure.what()};
  } catch (const std::bad_alloc&) {
    result.stop = ReadStop{std::max(first, lines.number()), "not enough memory"};
  }
  return result;
}

TableSource tablesIn(const FileSystem& files, std::string_view folder) {
  return [&files, folder](std::string_view name, const ReadContent& read) {
    std::string content;
    try {
      content = files.read(fileInFolder(files, folder, name));
    } catch (const Failure& failure) {
      return notOpened(failure.what());
    } catch (const std::bad_alloc&) {
      return notOpened("not enough memory");
    }
    return read(content);
  };
}

Path fileInFolder(const FileSystem& files, std::string_view folder, std::string_view name) {
  const std::string_view fault = faultOfName(name);
  if (!fault.empty()) throw Failure("The name holds a \"" + std::string(fault) + '"');
  return files.path(std::string(folder) + pathSeparator + std::string(name));
}

void appendCsvLine(std::string& lines, std::span<const std::string_view> fields) {
  for (const auto& field : fields) {
    if (&field != fields.data()) lines += ',';
    lines += field;
  }
  lines += "\r\n";
}

std::string csvLine(std::span<const std::string> fields) {
  std::string line;
  appendCsvLine(line, std::vector<std::string_view>(fields.begin(), fields.end()));
  return line;
}

}  // namespace kova
