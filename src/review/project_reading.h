// SPDX-License-Identifier: MIT
// A project as the wizard reads it, and its files as they are.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/code_page.h"
#include "review/project_files.h"
#include "review/table_text.h"
#include "tables/alarm_table.h"
#include "tables/export_table.h"
#include "tables/history_table.h"

namespace kova {

/// Where something is in a file. Lines and columns count from 1; 0 is the file as a whole.
struct Place {
  std::string_view file;
  std::size_t line = 0;
  std::size_t column = 0;
};

/// A table and how far its reader came.
template <class Rows>
struct TableReading {
  Rows rows;
  ReadResult result;
};

/// Moves, but does not copy: its tables are views into its files.
struct ProjectReading {
  ProjectReading() = default;
  ProjectReading(const ProjectReading&) = delete;
  ProjectReading& operator=(const ProjectReading&) = delete;
  ProjectReading(ProjectReading&&) = default;
  ProjectReading& operator=(ProjectReading&&) = default;
  ~ProjectReading() = default;

  // Names of files are in the machine's own form.

  /// Each row holds the device names that the wizard reads as soon as it is selected.
  TableReading<std::vector<PropertyRecord>> properties;
  std::vector<std::string>
      foldedNames;  ///< of the properties, as a disk compares them without case
  TableReading<HistoryTable> history;
  TableReading<AlarmTable> alarms;
  std::string devicesFile;  ///< from which the server's devices are read
  TableReading<DeviceNames> devices;
  std::map<std::string, ReadResult, std::less<>> nameLists;  ///< by file name

  std::vector<std::string> names;                              ///< of all plain files
  ProjectFiles files;                                          ///< the tables, backups left out
  std::map<std::string, std::string, std::less<>> unreadable;  ///< why, by file name
  std::map<std::string, TableText, std::less<>> tables;        ///< views into `files`
  const CodePage* codePage = nullptr;

  /// The table of this name, or an empty one.
  const TableText& table(std::string_view name) const;
  /// Where a column of row `row` is, counted from 0 among those that the reader has accepted.
  Place placeOf(std::string_view file, const ReadResult& result, std::size_t row,
                std::string_view tag) const;
};

/// Reads a directory, given as wizard text. `codePage` outlives the result. Throws Failure if the
/// directory can't be listed or holds no export table.
ProjectReading readProject(const FileSystem& files, std::string_view folder,
                           const CodePage& codePage);

}  // namespace kova
