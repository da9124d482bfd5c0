// SPDX-License-Identifier: MIT
// One row of a table, written and read back by the table's own writer and reader, to see what would
// become of it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kova {

/// The tables that the texts of the form go to.
enum class TableFile { exports, history, alarms };

/// Name of the file in the project directory.
std::string_view nameOf(TableFile file);

/// A header line and one data line.
struct TrialRow {
  std::vector<std::string> tags;
  std::vector<std::string> fields;  ///< one a tag
};

/// A row in which nothing has been filled in yet. It reads back as it is.
TrialRow emptyRow(TableFile file);

/// Position of the column with this tag, in the case of the header that the writer makes.
std::size_t columnOf(const TrialRow& row, std::string_view tag);

/// What a reader makes of a row.
struct Reading {
  bool found = false;               ///< the row is there again
  bool stopped = false;             ///< the reader went no further
  std::vector<std::string> fields;  ///< without the blanks around them, numbers as they are written
};

Reading readBack(TableFile file, const TrialRow& row);

}  // namespace kova
