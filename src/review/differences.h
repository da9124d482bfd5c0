// SPDX-License-Identifier: MIT
// What differs between two states of a project, by rows and columns.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "review/preview.h"
#include "review/project_files.h"
#include "tables/project_on_disk.h"

namespace kova {

enum class Sign : std::uint8_t { added, removed, changed, moved };

/// "+", "-", "~" and ">".
char mark(Sign sign);

/// A field before and after, without the blanks around it.
struct FieldChange {
  std::string column;  ///< its tag as the wizard writes it
  std::string before;
  std::string after;
};

struct RowChange {
  Sign sign = Sign::changed;
  bool moved = false;  ///< stands elsewhere among the rows that both have, also if it has changed
  /// By which the row is known: export and property name; export, local and property name; local
  /// and property name; number of the device.
  std::vector<std::string> names;
  std::size_t before = 0;  ///< place among the rows, from 1; 0 if it is not there
  std::size_t after = 0;
  /// What differs; of a row that is new or gone all that it holds.
  std::vector<FieldChange> fields;
};

struct FileDifference {
  std::string name;           ///< in the machine's own form
  Sign sign = Sign::changed;  ///< of the file; never moved
  std::vector<RowChange> rows;
  /// What differs in form only, in messages: line endings, comments, columns, numbers.
  std::vector<std::string> form;
};

/// Compares two contents of a file; nothing stands for a file that is not there. Rows are known by
/// their names and their place among those of the same names, columns by their tags. Fields that
/// read as the same value are the same, and PROPERTY_ID never counts. A file that is no table has
/// no rows. Nothing if both contents are equal.
std::optional<FileDifference> compareFile(std::string_view name,
                                          const std::optional<std::string>& before,
                                          const std::optional<std::string>& after);

/// Files that differ, in the order of their names.
std::vector<FileDifference> compareProjects(const ProjectFiles& before, const ProjectFiles& after);

/// What Done would change in the project directory. A table that can't be read counts as one that
/// is not there.
std::vector<FileDifference> comparePreview(const FileSystem& disk, const Preview& preview);

/// The rows that differ, as the status line counts what is not yet written.
Unwritten countChanges(const std::vector<FileDifference>& files);

/// "MAGNET CURRENT", and for a row that has changed "MAGNET CURRENT: PROPERTY_SIZE 4 -> 8".
std::string textOf(const RowChange& row);

}  // namespace kova
