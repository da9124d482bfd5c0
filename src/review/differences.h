// SPDX-License-Identifier: MIT
// Differences between two states of a project, by rows and columns.
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

/// A field before and after, without the spaces around it.
struct FieldChange {
  std::string column;  ///< its tag as the wizard writes it
  std::string before;
  std::string after;
};

struct RowChange {
  Sign sign = Sign::changed;
  bool moved = false;  ///< among the rows that both have; a changed row may have moved too
  /// Identify the row: export and property name; export, local and property name; local and
  /// property name; number of the device.
  std::vector<std::string> names;
  std::size_t before = 0;  ///< place among the rows, from 1; 0 if there is none
  std::size_t after = 0;
  /// The fields that differ; all fields of an added or removed row.
  std::vector<FieldChange> fields;
};

struct FileDifference {
  std::string name;           ///< native
  Sign sign = Sign::changed;  ///< of the file; never moved
  std::vector<RowChange> rows;
  /// Messages about formatting: line endings, comments, columns, spaces.
  std::vector<std::string> formatting;
};

/// Compares two contents of a file; nothing means no file. Rows match by their names and
/// their order among equal names, columns by their tags. Fields that read as the same value are
/// equal, and PROPERTY_ID never counts. A file that is not a table has no rows. Returns nothing if
/// the contents are equal.
std::optional<FileDifference> compareFile(std::string_view name,
                                          const std::optional<std::string>& before,
                                          const std::optional<std::string>& after);

/// Files that differ, sorted by name.
std::vector<FileDifference> compareProjects(const ProjectFiles& before, const ProjectFiles& after);

/// What Done would change in the project directory. A table that can't be read counts as missing.
std::vector<FileDifference> comparePreview(const FileSystem& disk, const Preview& preview);

/// Counts the rows that differ as the status line counts unwritten rows.
Unwritten countChanges(const std::vector<FileDifference>& files);

/// "MAGNET CURRENT", or for a changed row "MAGNET CURRENT: PROPERTY_SIZE 4 -> 8".
std::string textOf(const RowChange& row);

}  // namespace kova
