// SPDX-License-Identifier: MIT
// The backups of a project directory, in sets that were made together.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/platform.h"
#include "review/project_files.h"

namespace kova {

/// One file of a set, with native names.
struct BackedUpFile {
  std::string name;  ///< of the file that was backed up
  std::string backup;
  std::uint64_t bytes = 0;
};

/// The files of one backup. A backup that takes longer than a second has several timestamps.
struct BackupSet {
  std::int32_t first = 0;  ///< seconds since 1970-01-01 00:00:00 UTC
  std::int32_t last = 0;
  std::vector<BackedUpFile> files;  ///< sorted by name
};

/// The backup sets of a folder, newest first. Throws Failure if it can't be listed.
std::vector<BackupSet> backupSets(const FileSystem& files, const Path& folder);

/// The set that covers a timestamp.
std::optional<BackupSet> findBackupSet(const std::vector<BackupSet>& sets, std::int32_t timestamp);

/// "2026-11-24 16:05:09" in the time zone of the machine.
std::string localTime(std::int32_t timestamp);
/// "5 minutes", "3 hours", "2 days"; "0 seconds" for a timestamp in the future.
std::string ageText(std::int32_t timestamp, std::int32_t now);

/// The tables in a set. Throws Failure if one can't be read.
ProjectFiles filesOf(const FileSystem& files, const Path& folder, const BackupSet& set);

/// The outcome of `restore`.
struct Restored {
  std::vector<std::string> files;    ///< restored, in the set's order
  std::vector<std::string> kept;     ///< backups of the files as they were before
  std::vector<std::string> missing;  ///< files left as they were after a failure
  std::string failure;               ///< why it stopped; empty if it is complete
};

/// These files of a set; all of them if `names` is empty. Throws Failure if the set lacks one.
BackupSet partOf(const BackupSet& set, const std::vector<std::string>& names);

/// Restores the files of a set. Current files are backed up first, each file is replaced
/// atomically, and the first failure stops it. Files that are not in the set stay. If one of the
/// backups can't be read, throws Failure and changes nothing.
Restored restore(const Platform& platform, std::string_view folder, const BackupSet& set);

}  // namespace kova
