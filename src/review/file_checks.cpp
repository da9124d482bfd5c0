// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
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

using enum Severity;

constexpr auto fileTable = std::to_array<Rule>({
    {"unreadable-file",
     error,
     "A table can't be read",
     "The wizard can't back the file up, so it does not read the project at all. Tables of more "
     "than 64 MiB are skipped.",
     "Make the file readable for your account, or move it away.",
     {},
     unreadable},
    {"line-feeds-only",
     error,
     "A table has LF line endings only",
     "The wizard sees one line, the header, and reads no rows.",
     "Restore the CR LF line endings with unix2dos or an editor.",
     {"MAGEQM-devices.csv", "", "DEVICE_NUMBER,DEVICE_NAME\n 0,QUAD.1\n",
      "DEVICE_NUMBER,DEVICE_NAME\r\n 0,QUAD.1\r\n"},
     lineFeedsOnly},
    {"mixed-line-endings",
     error,
     "Some lines of a table end in LF only",
     "That line and the next are read as one row, and the second half is lost.",
     "Give all lines of the file CR LF line endings.",
     {"MAGEQM-devices.csv", "QUAD.1\r\n", "QUAD.1\n", "QUAD.1\r"},
     mixedLineEndings},
    {"byte-order-mark",
     error,
     "A table starts with a byte order mark",
     "The mark becomes part of the first column's name. The column is not found, and all its "
     "fields read as empty, or as 0.",
     "Save the file in the code page of the system, without a byte order mark.",
     {"history.csv", "Index,", "\xEF\xBB\xBFIndex,", " index ,"},
     byteOrderMark},
    {"utf8-text",
     warning,
     "A table is in UTF-8",
     "Each non-ASCII character shows as two or three wrong ones. Programs that read the table in "
     "the code page see the same.",
     "Save the file in the code page of the system.",
     {"exports.csv", "Field at", "Field in \xC2\xB5T at", "Field in \xB5T at"},
     utf8Text},
    {"lacking-character",
     warning,
     "Byte not valid in the code page",
     "The byte shows as a box or not at all. The file keeps it.",
     "Check whether the table was written in another code page, and type the character again.",
     {"exports.csv", "Field at", "Field \x81 at", "Field \x80 at"},
     lackingCharacter},
    {"control-character",
     warning,
     "A table contains a control character",
     "The form does not show it, but two names that look the same differ by it.",
     "Remove the character.",
     {"exports.csv", "Field at", "Field \x07 at", "Field\tat"},
     controlCharacter},
    {"comment",
     note,
     "A table has comments",
     "Done writes the table without them.",
     "Keep the comments in a file of their own, or don't press Done.",
     {"history.csv", " 1,MAGNET", "# by hand\r\n 1,MAGNET", " 1 ,MAGNET"},
     comments},
    {"orphan-backup",
     note,
     "Backup of a file that does not exist",
     "The wizard treats it as a file of its own: it never deletes it, and it backs it up each "
     "time the project is opened.",
     "Restore it under the name of its file, or delete it.",
     {"notes-1700000000.txt", "", "Ask for new probes\r\n", ""},
     orphanBackup},
});

}  // namespace

std::span<const Rule> fileRules() {
  return fileTable;
}

}  // namespace kova::checks
