// SPDX-License-Identifier: MIT
#include <algorithm>
#include <optional>
#include <string>

#include "review/checks.h"
#include "review/line_endings.h"
#include "tables/backup.h"

namespace kova::checks {
namespace {

constexpr std::string_view byteOrderMarkOfUtf8 = "\xEF\xBB\xBF";

bool isAscii(char character) {
  return static_cast<unsigned char>(character) < 0x80;
}

/// Line and column of a byte, counting lines as the readers do.
Place placeOf(std::string_view file, std::string_view content, std::size_t at) {
  Place place{file, 1, 1};
  for (std::size_t byte = 0; byte < at; ++byte) {
    const bool endsLine =
        content[byte] == '\r' || (content[byte] == '\n' && byte > 0 && content[byte - 1] == '\r');
    if (content[byte] == '\r') ++place.line;
    place.column = endsLine ? 1 : place.column + 1;
  }
  return place;
}

std::size_t findBareLineFeed(std::string_view content) {
  auto at = content.find('\n');
  while (at != std::string_view::npos && at > 0 && content[at - 1] == '\r') {
    at = content.find('\n', at + 1);
  }
  return at;
}

/// Length of the UTF-8 sequence at the start of a text, 0 if there is none.
std::size_t sequenceLength(std::string_view text) {
  const auto first = static_cast<unsigned char>(text.front());
  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : first >= 0xC2 ? 2 : 0;
  if (length == 0 || first > 0xF4 || text.size() < length) return 0;
  const auto rest = text.substr(1, length - 1);
  const bool complete = std::all_of(rest.begin(), rest.end(), [](char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80;
  });
  return complete ? length : 0;
}

/// Place of the first non-ASCII character if all of them are UTF-8.
std::optional<std::size_t> findUtf8(std::string_view content) {
  std::optional<std::size_t> first;
  for (std::size_t at = 0; at < content.size();) {
    if (isAscii(content[at])) {
      ++at;
      continue;
    }
    const std::size_t length = sequenceLength(content.substr(at));
    if (length == 0) return std::nullopt;
    if (!first && !content.substr(at).starts_with(byteOrderMarkOfUtf8)) first = at;
    at += length;
  }
  return first;
}

/// Calls `visit` with each table's name and content.
template <class Visit>
void eachFile(const ProjectReading& project, Visit visit) {
  for (const auto& [name, content] : project.files) visit(name, std::string_view(content));
}

std::string byteText(char byte) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  const auto value = static_cast<unsigned char>(byte);
  return {'0', 'x', digits[value / digits.size()], digits[value % digits.size()]};
}

/// Reports the first byte of each table that `isWanted`.
template <class IsWanted>
void reportFirstByte(const ProjectReading& project, const Report& report, IsWanted isWanted,
                     const std::string& problem) {
  eachFile(project, [&](const std::string& name, std::string_view content) {
    const auto* const found = std::find_if(content.begin(), content.end(), isWanted);
    if (found == content.end()) return;
    const auto at = static_cast<std::size_t>(found - content.begin());
    report(placeOf(name, content, at), "byte " + byteText(*found) + " " + problem);
  });
}

}  // namespace

void unreadable(const ProjectReading& project, const Report& report) {
  for (const auto& [name, why] : project.unreadable) report({name}, "can't be read: " + why);
}

void lineFeedsOnly(const ProjectReading& project, const Report& report) {
  eachFile(project, [&](const std::string& name, std::string_view content) {
    const LineEndings ends = countLineEndings(content);
    if (ends.lineFeeds > 0 && ends.both + ends.carriageReturns == 0) {
      report({name, 1, content.find('\n') + 1}, "all lines end in LF only");
    }
  });
}

void mixedLineEndings(const ProjectReading& project, const Report& report) {
  eachFile(project, [&](const std::string& name, std::string_view content) {
    const LineEndings ends = countLineEndings(content);
    if (ends.lineFeeds == 0 || ends.both + ends.carriageReturns == 0) return;
    report(placeOf(name, content, findBareLineFeed(content)),
           "an LF without a CR does not end the line");
  });
}

void byteOrderMark(const ProjectReading& project, const Report& report) {
  eachFile(project, [&](const std::string& name, std::string_view content) {
    if (content.starts_with(byteOrderMarkOfUtf8))
      report({name, 1, 1}, "the file starts with a byte order mark");
  });
}

void utf8Text(const ProjectReading& project, const Report& report) {
  eachFile(project, [&](const std::string& name, std::string_view content) {
    if (const auto at = findUtf8(content)) {
      report(placeOf(name, content, *at), "a character in UTF-8, of two or more bytes");
    }
  });
}

void lackingCharacter(const ProjectReading& project, const Report& report) {
  const auto isLacking = [&](char byte) {
    constexpr char32_t privateUse = 0xE000;
    const char32_t character = project.codePage->character(byte);
    return !isAscii(byte) && ((character >= 0x80 && character < 0xA0) || character >= privateUse);
  };
  reportFirstByte(project, report, isLacking, "is not valid in " + project.codePage->name());
}

void controlCharacter(const ProjectReading& project, const Report& report) {
  const auto isControl = [](char byte) {
    const bool isSpace = byte == '\t' || byte == '\r' || byte == '\n';
    return isAscii(byte) && (byte < ' ' || byte == 0x7F) && !isSpace;
  };
  reportFirstByte(project, report, isControl, "is a control character");
}

void comments(const ProjectReading& project, const Report& report) {
  for (const auto& [name, table] : project.tables) {
    // A gap in the line numbers is a skipped comment.
    std::size_t line = 1;
    if (table.header.line == line) {
      const auto skips = [&](const TextRow& row) { return row.line != ++line; };
      const auto found = std::find_if(table.rows.begin(), table.rows.end(), skips);
      if (found == table.rows.end()) continue;
    }
    if (table.header.line > 0) report({name, line, 1}, "comment line");
  }
}

void orphanBackup(const ProjectReading& project, const Report& report) {
  for (const std::string& name : project.names) {
    const auto parts = timestampedName(name);
    if (!parts || parts->timestamp < smallestOldTimestamp || project.nameLists.contains(name))
      continue;
    if (std::binary_search(project.names.begin(), project.names.end(), parts->original)) continue;
    report({name}, "backup of " + parts->original + ", which does not exist");
  }
}

}  // namespace kova::checks
