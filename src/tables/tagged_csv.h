// SPDX-License-Identifier: MIT
// Tagged CSV tables: comment lines, a header line that names the columns, data lines.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file_system.h"

namespace kova {

/// Most rows of a table in memory.
inline constexpr std::int16_t tableRows = 1001;

/// Characters of the longest line that a reader accepts. A longer one is not a table's, and the
/// window could not show its fields.
inline constexpr std::size_t longestLine = 32767;

/// Replaces the content of a file. Throws Failure and leaves the file on disk unchanged.
using ReplaceFile = std::function<void(const Path& file, std::string_view content)>;

/// Position of the column named `tag` in a header line, -1 if there is none. Ignores case and white
/// space around the name. An empty column name matches every tag.
std::int16_t getCsvColumn(std::string_view line, std::string_view tag);

/// `text` without white space (space, tab, NUL) and line endings at both ends.
std::string_view stripBlanks(std::string_view text);

/// A line that begins with this sign is a comment.
bool isCommentSign(char sign);

/// The fields of one data line, stripped, as views of the line.
using CsvFields = std::vector<std::string_view>;

/// Finds all fields of a line. From the second field on, a comma between quotes does not separate;
/// the quotes stay.
void splitCsvLine(std::string_view line, CsvFields& fields);

/// Field of a column; empty if the line has no such column.
inline std::string_view getCsvField(const CsvFields& fields, std::int16_t column) {
  const auto index = static_cast<std::size_t>(column);
  return index < fields.size() ? fields[index] : std::string_view();
}

/// Iterates over the lines of a table without its comments.
class TableLines {
 public:
  /// `content` outlives it.
  explicit TableLines(std::string_view content) : rest_(content) {}
  /// The next line without its line ending, or nothing after the last one. Throws Failure if it is
  /// too long.
  std::optional<std::string_view> next();
  /// Number of the line that `next` has reached, from 1 and including comments; after the last line
  /// one more than the number of lines.
  std::size_t number() const { return number_; }

 private:
  std::string_view rest_;
  std::size_t number_ = 0;
};

/// Where and why a reader stopped before the end of a file.
struct ReadStop {
  std::size_t line = 0;  ///< from 1, including comments; 0: the file could not be opened
  std::string reason;
};

struct ReadResult {
  std::int16_t rows = 0;           ///< rows accepted
  std::vector<std::size_t> lines;  ///< line number of each row, from 1, including comments
  std::optional<ReadStop> stop;
  /// Its lines end in LF only, so that it was read as a single line.
  bool onlyLineFeeds = false;
  std::size_t skipped = 0;  ///< data lines that are not rows
};

/// Takes a data line after `rows` accepted ones. True if it becomes a row.
using TakeRow = std::function<bool(const CsvFields&, std::int16_t rows)>;

/// The reading loop of all tables. `header` gets the header line, `row` each data line after it. A
/// failure, also lack of memory, ends the reading and is reported in the result, not thrown.
ReadResult readTable(std::string_view content, const std::function<void(std::string_view)>& header,
                     const TakeRow& row);

using ReadContent = std::function<ReadResult(std::string_view content)>;
/// Passes the content of the table with this file name to a reader. The result has the reason if
/// the file can't be read.
using TableSource = std::function<ReadResult(std::string_view name, const ReadContent& read)>;

/// The tables in a directory. Both arguments must outlive it.
TableSource tablesIn(const FileSystem& files, std::string_view folder);

/// Path of a file directly in `folder`. Throws Failure if `name` has a `faultOfName`, as it could
/// lead to another folder.
Path fileInFolder(const FileSystem& files, std::string_view folder, std::string_view name);

/// One line of a table with its line ending: the fields, unchanged, joined by commas.
std::string csvLine(std::span<const std::string> fields);
/// The same, appended to other lines.
void appendCsvLine(std::string& lines, std::span<const std::string_view> fields);

}  // namespace kova
