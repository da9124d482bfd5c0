// SPDX-License-Identifier: MIT
// A project as the wizard reads it, together with its raw files.
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

/// A place in a file. Lines and columns count from 1; line 0 is the whole file.
struct Place {
  std::string_view file;
  std::size_t line = 0;
  std::size_t column = 0;
};

/// A table and the result of reading it.
template <class Rows>
struct TableReading {
  Rows rows;
  ReadResult result;
};

/// Can be moved, but not copied: its tables are views into its files.
struct ProjectReading {
  ProjectReading() = default;
  ProjectReading(const ProjectReading&) = delete;
  ProjectReading& operator=(const ProjectReading&) = delete;
  ProjectReading(ProjectReading&&) = default;
  ProjectReading& operator=(ProjectReading&&) = default;
  ~ProjectReading() = default;

  // File names are native.

  /// Each row has the device names that the wizard reads when it is selected.
  TableReading<std::vector<PropertyRecord>> properties;
  std::vector<std::string> foldedNames;  ///< of the properties, for disks that ignore case
  TableReading<HistoryTable> history;
  TableReading<AlarmTable> alarms;
  std::string devicesFile;  ///< the server's device names
  TableReading<DeviceNames> devices;
  std::map<std::string, ReadResult, std::less<>> nameLists;  ///< by file name

  std::vector<std::string> names;                              ///< of all plain files
  ProjectFiles files;                                          ///< the tables, without backups
  std::map<std::string, std::string, std::less<>> unreadable;  ///< reason by file name
  std::map<std::string, TableText, std::less<>> tables;        ///< views into `files`
  const CodePage* codePage = nullptr;

  /// The table of this name, or an empty one.
  const TableText& table(std::string_view name) const;
  /// Place of a column in a row, counted from 0 among the rows that the reader accepted.
  Place placeOf(std::string_view file, const ReadResult& result, std::size_t row,
                std::string_view tag) const;
};

/// Reads a directory, given as wizard text. `codePage` outlives the result. Throws Failure if the
/// directory can't be listed or holds no export table.
ProjectReading readProject(const FileSystem& files, std::string_view folder,
                           const CodePage& codePage);

}  // namespace kova
