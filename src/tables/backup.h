// SPDX-License-Identifier: MIT
// Time-stamped copies of everything that lies in a project directory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "platform/platform.h"

namespace kova {

/// Age in seconds up to which a backup stays.
inline constexpr std::int32_t backupAge = 144000;

enum class FileVerdict { inUse, backupKept, backupDeleted };

/// What the name of a plain file tells at the time `now`. A backup has a time stamp, a number of
/// nine or ten digits that stands alone behind the last dash of its base.
FileVerdict classify(std::string_view name, std::int32_t now);

/// Name of the backup of file `name` with this time stamp.
std::string backupName(std::string_view name, std::int32_t stamp);

/// States of the files of a folder, by their name in the machine's own form.
using FolderStamps = std::map<std::string, FileStamp, std::less<>>;

/// What a walk has done.
struct BackupResult {
  std::size_t copied = 0;
  std::size_t deleted = 0;
  FolderStamps stamps;  ///< files in use as they were when they were copied
};

/// Copies each file in use of the folder beside itself and deletes backups that are too old, on a
/// list taken beforehand, in the order of the names. `progress` is told the number of files done.
/// Throws Failure at the first call that fails; what is done stands.
BackupResult backupExistingFiles(FileSystem& files, const Clock& clock, const Path& directory,
                                 const std::function<void(std::size_t)>& progress = {});

}  // namespace kova
