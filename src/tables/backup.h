// SPDX-License-Identifier: MIT
// Timestamped copies of the files of a project directory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/platform.h"

namespace kova {

/// Age in seconds up to which a backup is kept.
inline constexpr std::int32_t backupAge = 144000;

/// Ten digits, since the year 2001. Smaller numbers are channels, days or versions.
inline constexpr std::int32_t smallestOldTimestamp = 1'000'000'000;

/// The last second of the clock, in the year 2038.
inline constexpr std::int32_t lastTimestamp = std::numeric_limits<std::int32_t>::max();

enum class FileVerdict { inUse, backupKept, backupDeleted };

/// Verdict on a plain file by its name, at the time `now`, among the sorted `names` of its folder.
/// The base of a backup's name ends in a dash and a timestamp, and the original is in the same
/// folder. Only backups with ten digits are deleted.
FileVerdict classify(std::string_view name, const std::vector<std::string>& names,
                     std::int32_t now);

struct ClassifiedFile {
  std::string name;
  FileVerdict verdict = FileVerdict::inUse;
};
/// The plain files of a folder, sorted. A file of device names that belongs to a row of the export
/// table is in use, even if its name looks like a backup's. If that table can't be read, no backup
/// of device names is deleted. Throws Failure if the folder can't be listed.
std::vector<ClassifiedFile> classifyFiles(const FileSystem& files, const Path& folder,
                                          std::int32_t now);

/// The parts of a backup's name.
struct TimestampedName {
  std::string original;
  std::int32_t timestamp = 0;
};
/// Nothing if the base does not end in a dash and a number. `classify` decides whether the file is
/// a backup.
std::optional<TimestampedName> timestampedName(std::string_view name);

/// Name of the backup of file `name` with this timestamp.
std::string backupName(std::string_view name, std::int32_t timestamp);

/// States of the files of a folder, by native name.
using FolderStates = std::map<std::string, FileState, std::less<>>;

struct BackupResult {
  std::size_t copied = 0;
  std::size_t deleted = 0;
  FolderStates states;  ///< of the files in use, when they were copied
};

/// Why a backup has failed.
enum class BackupError { notDeleted, notCopied };

/// A file that could not be deleted or copied.
class BackupFailure : public Failure {
 public:
  BackupFailure(const Failure& cause, BackupError error, std::string_view file, std::size_t deleted)
      : Failure(cause), error_(error), file_(file), deleted_(deleted) {}
  BackupError error() const { return error_; }
  const std::string& file() const { return file_; }
  /// Backups that had been deleted before.
  std::size_t deleted() const { return deleted_; }

 private:
  BackupError error_;
  std::string file_;
  std::size_t deleted_;
};

/// Deletes the folder's old backups, then copies each file in use to a backup in the same folder,
/// in the order of the names. `progress` gets the number of files done. At the first file that
/// fails, removes the copies that it has made and throws BackupFailure. Throws Failure if the
/// folder can't be listed.
BackupResult backupExistingFiles(FileSystem& files, const Clock& clock, const Path& directory,
                                 const std::function<void(std::size_t)>& progress = {});

}  // namespace kova
