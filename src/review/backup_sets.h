// SPDX-License-Identifier: MIT
// The backups of a project directory, by the moments at which they were made.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/platform.h"
#include "review/project_files.h"

namespace kova {

/// One file of a set, by its names in the machine's own form.
struct BackedUpFile {
  std::string name;  ///< whose backup it is
  std::string backup;
  std::uint64_t bytes = 0;
};

/// What one walk has copied. A walk that takes longer than a second has several timestamps.
struct BackupSet {
  std::int32_t first = 0;  ///< seconds since 1970-01-01 00:00:00 UTC
  std::int32_t last = 0;
  std::vector<BackedUpFile> files;  ///< in the order of their names
};

/// The sets of a folder, the newest first. Throws Failure if it can't be listed.
std::vector<BackupSet> backupSets(const FileSystem& files, const Path& folder);

/// The set that holds a timestamp.
std::optional<BackupSet> findBackupSet(const std::vector<BackupSet>& sets, std::int32_t timestamp);

/// "2026-11-24 16:05:09" in the time zone of the machine.
std::string localTime(std::int32_t timestamp);
/// "5 minutes", "3 hours", "2 days"; "0 seconds" for what is to come.
std::string ageText(std::int32_t timestamp, std::int32_t now);

/// The tables in a set. Throws Failure if one can't be read.
ProjectFiles filesOf(const FileSystem& files, const Path& folder, const BackupSet& set);

/// What a restoring has done.
struct Restored {
  std::vector<std::string> files;    ///< that hold what the set holds, in its order
  std::vector<std::string> kept;     ///< backups of what was there ahead of it
  std::vector<std::string> missing;  ///< files that are as they were, since it has failed
  std::string failure;               ///< why it ended ahead of its time
};

/// The part of a set that these files are; all of it if none is named. Throws Failure if the set
/// lacks one of them.
BackupSet partOf(const BackupSet& set, const std::vector<std::string>& names);

/// Gives the files of a set what they held then. What is there is backed up first; each file is
/// replaced as a whole or not at all, and the first that can't be ends it. Files that are not in
/// the set stay. Throws Failure, and has changed nothing, if one of the backups can't be read.
Restored restore(const Platform& platform, std::string_view folder, const BackupSet& set);

}  // namespace kova
