// SPDX-License-Identifier: MIT
// Timestamped copies of everything that lies in a project directory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/platform.h"

namespace kova {

/// Age in seconds up to which a backup stays.
inline constexpr std::int32_t backupAge = 144000;

/// Ten digits, from the year 2001 on. Smaller numbers are numbers of channels, days, versions.
inline constexpr std::int32_t smallestOldTimestamp = 1'000'000'000;

enum class FileVerdict { inUse, backupKept, backupDeleted };

/// What the name of a plain file tells at the time `now`, among the sorted `names` of its folder. A
/// backup has a timestamp, a number that stands alone behind the last dash of its base, and lies
/// beside the file that it is a backup of. One that is to be deleted has ten digits.
FileVerdict classify(std::string_view name, const std::vector<std::string>& names,
                     std::int32_t now);

struct ClassifiedFile {
  std::string name;
  FileVerdict verdict = FileVerdict::inUse;
};
/// The plain files of a folder, sorted. A file of device names that a row of the export table names
/// is in use, even if its name looks like a backup's. While that table can't be read nobody knows,
/// and no backup of device names is deleted. Throws Failure if the folder can't be listed.
std::vector<ClassifiedFile> classifyFiles(const FileSystem& files, const Path& folder,
                                          std::int32_t now);

/// The name of a backup, taken apart.
struct TimestampedName {
  std::string original;
  std::int32_t timestamp = 0;
};
/// Nothing if the base does not end in a dash and a number. Whether it is a backup, `classify`
/// tells.
std::optional<TimestampedName> timestampedName(std::string_view name);

/// Name of the backup of file `name` with this timestamp.
std::string backupName(std::string_view name, std::int32_t timestamp);

/// States of the files of a folder, by their name in the machine's own form.
using FolderStates = std::map<std::string, FileState, std::less<>>;

/// What a walk has done.
struct BackupResult {
  std::size_t copied = 0;
  std::size_t deleted = 0;
  FolderStates states;  ///< files in use as they were when they were copied
};

/// Why a walk has ended ahead of its time.
enum class BackupError { notDeleted, notCopied };

/// A file that a walk could not deal with.
class BackupFailure : public Failure {
 public:
  BackupFailure(const Failure& cause, BackupError error, std::string_view file, std::size_t deleted)
      : Failure(cause), error_(error), file_(file), deleted_(deleted) {}
  BackupError error() const { return error_; }
  const std::string& file() const { return file_; }
  /// Backups that were deleted ahead of it.
  std::size_t deleted() const { return deleted_; }

 private:
  BackupError error_;
  std::string file_;
  std::size_t deleted_;
};

/// Deletes the folder's backups that are too old, then copies each file in use beside itself, on a
/// list taken beforehand, in the order of the names. `progress` is told the number of files done.
/// Throws BackupFailure at the first file that makes trouble: the copies that this walk has added
/// are removed again. Throws Failure if the folder can't be listed.
BackupResult backupExistingFiles(FileSystem& files, const Clock& clock, const Path& directory,
                                 const std::function<void(std::size_t)>& progress = {});

}  // namespace kova
