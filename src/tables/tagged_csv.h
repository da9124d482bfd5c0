// SPDX-License-Identifier: MIT
// Access to tagged CSV tables: comment lines, a header line that names the columns, data lines.
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

/// Rows of each table in memory.
inline constexpr std::int16_t tableRows = 1001;

/// Characters of the longest line that a reader takes. A longer one is no line of a table, and what
/// shows its fields would not cope with it.
inline constexpr std::size_t longestLine = 32767;

/// Gives a file its whole content. Throws Failure; the file on disk is then as it was.
using ReplaceFile = std::function<void(const Path& file, std::string_view content)>;

/// Position of the column that the header line names `tag`, case and blanks around it ignored. The
/// first empty column answers to every tag. -1 if there is none.
std::int16_t getCsvColumn(std::string_view line, std::string_view tag);

/// `text` without the blanks (space, tab, NUL) and line endings at both of its ends.
std::string_view stripBlanks(std::string_view text);

/// A line that begins with this sign is a comment.
bool isCommentSign(char sign);

/// The fields of one data line without the blanks around them, as parts of the line.
using CsvFields = std::vector<std::string_view>;

/// Finds all fields of a line. A comma between quotes does not separate, from the second field on;
/// the quotes stay.
void splitCsvLine(std::string_view line, CsvFields& fields);

/// Field of a column; empty if the line has no such column.
inline std::string_view getCsvField(const CsvFields& fields, std::int16_t column) {
  const auto index = static_cast<std::size_t>(column);
  return index < fields.size() ? fields[index] : std::string_view();
}

/// Goes through the lines of a table that are no comments.
class TableLines {
 public:
  /// `content` outlives it.
  explicit TableLines(std::string_view content) : rest_(content) {}
  /// The next line without its end, or nothing behind the last one. Throws Failure for one that is
  /// too long.
  std::optional<std::string_view> next();
  /// Number, from 1 and comments counted, of the line that `next` has come to; one more than there
  /// are lines once it is at the end.
  std::size_t number() const { return number_; }

 private:
  std::string_view rest_;
  std::size_t number_ = 0;
};

/// Where and why a reader stopped ahead of the end of a file.
struct ReadStop {
  std::size_t line = 0;  ///< 1-based, comment lines counted; 0: the file could not be opened
  std::string reason;
};

/// What a reader has done.
struct ReadResult {
  std::int16_t rows = 0;           ///< rows accepted
  std::vector<std::size_t> lines;  ///< of each of them, from 1, comments counted
  std::optional<ReadStop> stop;
  /// Only line feeds separate its lines, so that all of it was one line.
  bool onlyLineFeeds = false;
  std::size_t skipped = 0;  ///< data lines that became no row
};

/// Takes a data line behind `rows` accepted ones. True if it becomes a row.
using TakeRow = std::function<bool(const CsvFields&, std::int16_t rows)>;

/// The reading loop that all tables share. `header` gets the header line once, `row` each data line
/// behind it; whatever fails in between, for lack of memory too, ends the reading and is told in
/// the result, not thrown.
ReadResult readTable(std::string_view content, const std::function<void(std::string_view)>& header,
                     const TakeRow& row);

using ReadContent = std::function<ReadResult(std::string_view content)>;
/// Hands the content of a table, named as in its directory, to a reader. The result says why if
/// there is no content to be had.
using TableSource = std::function<ReadResult(std::string_view name, const ReadContent& read)>;

/// The tables in a directory. It outlives neither argument.
TableSource tablesIn(const FileSystem& files, std::string_view folder);

/// Path of a file that lies directly in `folder`. Throws Failure for a name with which
/// `faultOfName` finds fault: it would name a file elsewhere, or none.
Path fileInFolder(const FileSystem& files, std::string_view folder, std::string_view name);

/// One line of a table with its line ending, the fields joined by commas as they are.
std::string csvLine(std::span<const std::string> fields);
/// The same behind other lines.
void appendCsvLine(std::string& lines, std::span<const std::string_view> fields);

}  // namespace kova
