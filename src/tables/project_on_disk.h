// SPDX-License-Identifier: MIT
// What the project's files held when the wizard last read or wrote them, and how the project in
// memory differs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "tables/alarm_table.h"
#include "tables/backup.h"
#include "tables/device_files.h"
#include "tables/export_table.h"
#include "tables/history_table.h"
#include "tables/row_pairs.h"

namespace kova {

struct Project;

/// Many short texts in one string: fast to copy, and a thousand rows are freed at once.
class PackedTexts {
 public:
  PackedTexts() = default;
  /// The columns of the first `exportCount` rows, row by row.
  PackedTexts(const ExportTable& exportTable, std::int16_t exportCount);
  explicit PackedTexts(const DeviceNames& names);

  std::size_t size() const { return starts_.size() - 1; }
  std::string_view operator[](std::size_t index) const {
    return {text_.data() + starts_[index], starts_[index + 1] - starts_[index]};
  }
  /// They are these names.
  bool holds(const DeviceNames& names) const;

 private:
  void add(std::string_view text) {
    text_ += text;
    starts_.push_back(static_cast<std::uint32_t>(text_.size()));
  }

  std::string text_;
  std::vector<std::uint32_t> starts_{0};
};

/// A table that someone else has changed since the wizard last read or wrote it.
struct ExternalChange {
  std::string file;
  std::string backup;  ///< holds their version
};

struct ProjectOnDisk {
  PackedTexts properties;   ///< rows of the export table
  HistoryTable history;     ///< active rows alone
  AlarmTable alarms;        ///< active rows alone
  PackedTexts deviceNames;  ///< of the server, in the file that Done writes
  PackedTexts namesRead;    ///< of the server, in the file from which they are read
  /// Device names of single properties, by property name.
  std::map<std::string, PackedTexts, std::less<>> nameLists;
  FolderStates states;            ///< to detect external changes
  bool backupsUnflushed = false;  ///< a power cut may still empty the backups made at the opening
  std::vector<ExternalChange> externalChanges;  ///< found by the last Done
  /// Why the last Done did not use the repository that the environment names; usually empty.
  std::string repositoryNotUsed;
  bool notWaitedFor = false;  ///< the last Done did not get the lock from another wizard in time
};

/// The active rows of a table paired with those on disk by their names.
RowPairs propertyPairs(const Project& project, const ProjectOnDisk& disk);
RowPairs historyPairs(const Project& project, const ProjectOnDisk& disk);
RowPairs alarmPairs(const Project& project, const ProjectOnDisk& disk);

/// A property as the export table on disk has it; nothing else of it is set.
PropertyRecord propertyOnDisk(const ProjectOnDisk& disk, std::size_t row);

/// Rows that are new or differ from the disk, by table, and rows that only the disk has.
struct Unwritten {
  std::size_t properties = 0;
  std::size_t historyRows = 0;
  std::size_t alarmRows = 0;
  std::size_t deviceNames = 0;  ///< of the server and of properties with names of their own
  std::size_t removals = 0;     ///< rows of any table, and device names

  std::size_t rows() const { return properties + historyRows + alarmRows + deviceNames; }
  std::size_t all() const { return rows() + removals; }
  bool operator==(const Unwritten&) const = default;
};

/// Counts what Done would change. This equals a comparison of the files before and after it if the
/// readers skip nothing, each list of names has been read and belongs to one property, and nobody
/// else writes the files. The history line that Done adds for the form does not count.
Unwritten findUnwritten(const Project& project, const ProjectOnDisk& disk);

/// The part of it that a change of directory drops: all but the server's device names, which stay
/// in memory.
Unwritten findDroppable(const Project& project, const ProjectOnDisk& disk);

/// The part of it that reloading the project loses. The server's device names stay unless their
/// file is read.
Unwritten findLostByReading(const Project& project, const ProjectOnDisk& disk, bool readsNames);

/// The names in a file of device names, as far as it can be read.
PackedTexts namesIn(const FileSystem& files, std::string_view folder, std::string_view file);

}  // namespace kova
