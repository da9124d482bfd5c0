// SPDX-License-Identifier: MIT
// What the files of the project held when the wizard last read or wrote them, and how the state
// differs from it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "tables/backup.h"
#include "tables/device_files.h"
#include "tables/export_table.h"

namespace kova {

struct Project;

/// Many short texts in one: a thousand rows are kept in a few microseconds, and nothing has to be
/// freed row by row when their project is left.
class PackedTexts {
 public:
  PackedTexts() = default;
  /// The columns of the first `exportCount` rows, row behind row.
  PackedTexts(const ExportTable& exportTable, std::int16_t exportCount);
  explicit PackedTexts(const DeviceNames& names);

  std::size_t size() const { return starts_.size() - 1; }
  std::string_view operator[](std::size_t index) const {
    return {text_.data() + starts_[index], starts_[index + 1] - starts_[index]};
  }

 private:
  void add(std::string_view text) {
    text_ += text;
    starts_.push_back(static_cast<std::uint32_t>(text_.size()));
  }

  std::string text_;
  std::vector<std::uint32_t> starts_{0};
};

/// A table that somebody else has written since the wizard looked at it last.
struct ExternalChange {
  std::string file;
  std::string backup;  ///< keeps what they wrote
};

struct ProjectOnDisk {
  PackedTexts properties;  ///< of the export table, the number of devices in each row included
  // Rows of these two are only ever appended, so their number tells which ones are on disk.
  std::int16_t historyRows = 0;
  std::int16_t alarmRows = 0;
  PackedTexts deviceNames;  ///< of the server, in the file that Done writes
  PackedTexts namesRead;    ///< of the server, in the file that they are read from
  /// Of properties with names of their own, by property name.
  std::map<std::string, PackedTexts, std::less<>> nameLists;
  FolderStates states;            ///< by which a foreign change shows
  bool backupsUnflushed = false;  ///< the entry has made backups that a power cut may still empty
  std::vector<ExternalChange> externalChanges;  ///< that the last Done has found
  /// Why the last Done has copied nothing, if the environment names a repository nevertheless.
  std::string repositoryNotUsed;
  bool notWaitedFor = false;  ///< the last Done has gone on beside a wizard that was finishing too
};

/// Rows that the disk does not hold as they are here, by table, and rows that it alone holds.
struct Unwritten {
  std::size_t properties = 0;
  std::size_t historyRows = 0;
  std::size_t alarmRows = 0;
  std::size_t deviceNames = 0;  ///< of the server and of properties with names of their own
  std::size_t removals = 0;     ///< properties and device names

  std::size_t rows() const { return properties + historyRows + alarmRows + deviceNames; }
  std::size_t all() const { return rows() + removals; }
  bool operator==(const Unwritten&) const = default;
};

/// Compares all rows that Done would write, as a comparison of the files before and after it would.
/// That is the same count as long as the files hold nothing that the readers leave out, each list
/// of names has been read and belongs to one property, and nobody else writes here. The line that
/// Done adds to the history for the property in the form does not count: it is no row of the state.
Unwritten findUnwritten(const Project& project, const ProjectOnDisk& disk);

/// The part of it that a change of directory drops: all but the server's device names, which go
/// along.
Unwritten findDroppable(const Project& project, const ProjectOnDisk& disk);

/// What reading the project anew can't bring back. The server's device names stay unless a file of
/// them is read.
Unwritten findLostByReading(const Project& project, const ProjectOnDisk& disk, bool readsNames);

/// The names in a file of device names, as far as a reader comes.
PackedTexts namesIn(const FileSystem& files, std::string_view folder, std::string_view file);

}  // namespace kova
