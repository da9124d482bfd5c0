// SPDX-License-Identifier: MIT
#include "tables/backup.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <system_error>
#include <utility>

#include "tables/device_files.h"
#include "tables/export_table.h"

namespace kova {

namespace {

std::string_view baseOf(std::string_view name) {
  return name.substr(0, name.find('.'));
}

// The files of device names that belong to rows of the folder's export table.
class NamedLists {
 public:
  NamedLists(const FileSystem& files, const Path& folder) : files_(files), folder_(folder) {}

  // `byName` is the verdict from the file name alone.
  FileVerdict verdict(const std::string& name, FileVerdict byName) {
    const auto parts = timestampedName(name);
    if (byName == FileVerdict::inUse || !parts || !stemOf(parts->original)) return byName;
    const auto stem = stemOf(name);
    if (!stem && byName != FileVerdict::backupDeleted) return byName;
    if (!readAlready_) exports_ = readExports();
    readAlready_ = true;
    if (!exports_) return FileVerdict::backupKept;
    // Searched in the whole text, so that damaged rows and line endings do not matter.
    return stem && exports_->find(*stem) != std::string::npos ? FileVerdict::inUse : byName;
  }

 private:
  // The property or local name without case.
  std::optional<std::string> stemOf(const std::string& name) const {
    const std::string folded = files_.withoutCase(files_.text(name));
    for (const std::string& file : {namesFile({}), serverNamesFile({})}) {
      const std::string ending = files_.withoutCase(file);
      if (folded.ends_with(ending)) return folded.substr(0, folded.size() - ending.size());
    }
    return std::nullopt;
  }

  std::optional<std::string> readExports() const {
    try {
      const std::string content = files_.read(folder_ / exportsFileName);
      TableLines lines(content);
      const auto header = lines.next();
      if (!header || getCsvColumn(*header, tagOf(&PropertyRecord::propertyName)) < 0)
        return std::nullopt;
      while (lines.next()) continue;
      return files_.withoutCase(content);
    } catch (const Failure&) {
      return std::nullopt;
    }
  }

  const FileSystem& files_;
  const Path& folder_;
  std::optional<std::string> exports_;
  bool readAlready_ = false;
};

class Walk {
 public:
  Walk(FileSystem& files, const Clock& clock, const Path& directory,
       const std::function<void(std::size_t)>& progress)
      : files_(files), clock_(clock), directory_(directory), progress_(progress) {}

  BackupResult run() {
    const std::int32_t now = clock_.unixTime();
    const auto listed = classifyFiles(files_, directory_, now);
    std::vector<const std::string*> inUse;
    // Deleting old backups first makes room for the new ones on a full disk.
    for (const auto& [name, verdict] : listed) {
      if (verdict == FileVerdict::inUse) {
        inUse.push_back(&name);
        continue;
      }
      if (verdict == FileVerdict::backupDeleted) remove(name);
      countFile();
    }
    for (const auto* name : inUse) {
      copy(*name);
      countFile();
    }
    return std::move(result_);
  }

 private:
  void remove(const std::string& name) {
    try {
      files_.remove(directory_ / name);
    } catch (const Failure& failure) {
      throw BackupFailure(failure, BackupError::notDeleted, name, result_.deleted);
    }
    ++result_.deleted;
  }

  void copy(const std::string& name) {
    const Path file = directory_ / name;
    const Path backup = directory_ / backupName(name, clock_.unixTime());
    try {
      // Taken before the copy, so that a change in between is noticed.
      if (const auto state = files_.state(file)) {
        result_.states.emplace_hint(result_.states.end(), name, *state);
      }
      const bool isNew = !files_.fileExists(backup);
      files_.copy(file, backup);
      if (isNew) added_.emplace_back(backup, files_.state(backup));
    } catch (const Failure& failure) {
      takeBack();
      throw BackupFailure(failure, BackupError::notCopied, name, result_.deleted);
    }
    ++result_.copied;
  }

  // Otherwise each attempt to open a project that can't be read would leave a set of copies.
  void takeBack() {
    for (const auto& [backup, made] : added_) {
      try {
        // Another wizard may have put its own copy there within the same second.
        if (files_.state(backup) == made) files_.remove(backup);
      } catch (const Failure&) {
        continue;  // the others can still be removed
      }
    }
  }

  void countFile() {
    ++done_;
    if (progress_) progress_(done_);
  }

  FileSystem& files_;
  const Clock& clock_;
  const Path& directory_;
  const std::function<void(std::size_t)>& progress_;
  BackupResult result_;
  std::vector<std::pair<Path, std::optional<FileState>>> added_;
  std::size_t done_ = 0;
};

}  // namespace

std::optional<TimestampedName> timestampedName(std::string_view name) {
  const auto base = baseOf(name);
  const auto dash = base.rfind('-');
  if (dash == std::string_view::npos) return std::nullopt;
  const auto digits = base.substr(dash + 1);
  const auto* const end = digits.data() + digits.size();
  std::int32_t timestamp = 0;
  const auto read = std::from_chars(digits.data(), end, timestamp);
  const bool whole = read.ec == std::errc() && read.ptr == end;
  if (!whole || (digits.size() > 1 && digits.front() == '0')) return std::nullopt;
  return TimestampedName{std::string(base.substr(0, dash)).append(name.substr(base.size())),
                         timestamp};
}

FileVerdict classify(std::string_view name, const std::vector<std::string>& names,
                     std::int32_t now) {
  const auto parts = timestampedName(name);
  if (!parts || !std::binary_search(names.begin(), names.end(), parts->original)) {
    return FileVerdict::inUse;
  }
  // Also short timestamps: with a clock set to the 1970s each backup would count as a new file.
  if (parts->timestamp >= std::int64_t{now} - backupAge) return FileVerdict::backupKept;
  return parts->timestamp >= smallestOldTimestamp ? FileVerdict::backupDeleted : FileVerdict::inUse;
}

std::vector<ClassifiedFile> classifyFiles(const FileSystem& files, const Path& folder,
                                          std::int32_t now) {
  const auto names = files.plainFiles(folder);
  NamedLists lists(files, folder);
  std::vector<ClassifiedFile> classified;
  classified.reserve(names.size());
  for (const auto& name : names) {
    classified.push_back({name, lists.verdict(name, classify(name, names, now))});
  }
  return classified;
}

std::string backupName(std::string_view name, std::int32_t timestamp) {
  const auto base = baseOf(name);
  std::string backup(base);
  return (backup += '-' + std::to_string(timestamp)).append(name.substr(base.size()));
}

BackupResult backupExistingFiles(FileSystem& files, const Clock& clock, const Path& directory,
                                 const std::function<void(std::size_t)>& progress) {
  return Walk(files, clock, directory, progress).run();
}

}  // namespace kova
