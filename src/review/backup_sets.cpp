// SPDX-License-Identifier: MIT
#include "review/backup_sets.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <iterator>
#include <map>
#include <utility>

#include "completion/table_writer.h"
#include "review/table_text.h"
#include "tables/backup.h"
#include "tables/quoting.h"

namespace kova {
namespace {

// Each file gets the time of its copy, so a backup on a slow disk has several timestamps in a row.
constexpr std::int32_t longestPause = 2;  // seconds

bool holds(const BackupSet& set, const std::string& name) {
  return std::any_of(set.files.begin(), set.files.end(),
                     [&](const BackedUpFile& file) { return file.name == name; });
}

/// The files may belong to the set.
bool continues(const BackupSet& set, std::int32_t timestamp,
               const std::vector<BackedUpFile>& files) {
  return timestamp - set.last <= longestPause &&
         std::none_of(files.begin(), files.end(),
                      [&](const BackedUpFile& file) { return holds(set, file.name); });
}

/// Puts all backups that `restore` makes into one set.
struct StoppedClock : Clock {
  explicit StoppedClock(std::int32_t moment) : now(moment) {}
  std::int32_t unixTime() const override { return now; }
  std::int32_t now;
};

bool isRestored(const FileSystem& files, const Path& file, const std::string& content) {
  try {
    return files.read(file) == content;
  } catch (const Failure&) {
    return false;
  }
}

}  // namespace

std::vector<BackupSet> backupSets(const FileSystem& files, const Path& folder) {
  const std::vector<std::string> names = files.plainFiles(folder);
  const std::vector<std::string> inUse = filesInUse(files, folder);
  std::map<std::int32_t, std::vector<BackedUpFile>> byTimestamp;
  for (const std::string& name : names) {
    const auto parts = timestampedName(name);
    if (!parts || std::binary_search(inUse.begin(), inUse.end(), name)) continue;
    const auto state = files.state(folder / name);
    byTimestamp[parts->timestamp].push_back({parts->original, name, state ? state->bytes : 0});
  }
  std::vector<BackupSet> sets;
  for (auto& [timestamp, added] : byTimestamp) {
    if (sets.empty() || !continues(sets.back(), timestamp, added))
      sets.push_back({timestamp, timestamp, {}});
    BackupSet& set = sets.back();
    set.last = timestamp;
    std::move(added.begin(), added.end(), std::back_inserter(set.files));
    std::sort(set.files.begin(), set.files.end(),
              [](const auto& one, const auto& other) { return one.name < other.name; });
  }
  std::reverse(sets.begin(), sets.end());
  return sets;
}

std::optional<BackupSet> findBackupSet(const std::vector<BackupSet>& sets, std::int32_t timestamp) {
  const auto found = std::find_if(sets.begin(), sets.end(), [&](const BackupSet& set) {
    return set.first <= timestamp && timestamp <= set.last;
  });
  return found == sets.end() ? std::nullopt : std::optional(*found);
}

std::string localTime(std::int32_t timestamp) {
  const std::time_t moment = timestamp;
  std::array<char, 32> text{};
  const std::tm* const parts = std::localtime(&moment);
  if (parts == nullptr) return std::to_string(timestamp);
  const auto length = std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", parts);
  return {text.data(), length};
}

std::string ageText(std::int32_t timestamp, std::int32_t now) {
  struct Unit {
    std::int64_t seconds;
    const char* name;
  };
  constexpr std::array units = {Unit{86400, "day"}, Unit{3600, "hour"}, Unit{60, "minute"},
                                Unit{1, "second"}};
  const std::int64_t age = std::max<std::int64_t>(std::int64_t{now} - timestamp, 0);
  const auto* const unit = std::find_if(units.begin(), units.end() - 1,
                                        [&](const Unit& one) { return age >= one.seconds; });
  return counted(static_cast<std::size_t>(age / unit->seconds), unit->name);
}

ProjectFiles filesOf(const FileSystem& files, const Path& folder, const BackupSet& set) {
  ProjectFiles tables;
  for (const BackedUpFile& file : set.files) {
    if (kindOfFile(file.name) == TableKind::none) continue;
    tables.emplace(file.name,
                   naming(file.backup, [&] { return files.read(folder / file.backup); }));
  }
  return tables;
}

BackupSet partOf(const BackupSet& set, const std::vector<std::string>& names) {
  if (names.empty()) return set;
  for (const std::string& name : names) {
    if (!holds(set, name)) throw Failure("the backup does not contain " + name);
  }
  BackupSet part = set;
  std::erase_if(part.files, [&](const BackedUpFile& file) {
    return std::find(names.begin(), names.end(), file.name) == names.end();
  });
  return part;
}

namespace {

/// The last free timestamp before `now`. The project is opened next, and that replaces backups of
/// its own second.
std::int32_t lastFreeTimestamp(const FileSystem& files, const Path& folder, std::int32_t now) {
  const std::vector<BackupSet> sets = backupSets(files, folder);
  std::int32_t timestamp = now - 1;
  while (findBackupSet(sets, timestamp)) --timestamp;
  return timestamp;
}

}  // namespace

Restored restore(const Platform& platform, std::string_view folder, const BackupSet& set) {
  FileSystem& files = platform.files;
  const Path path = files.path(folder);
  std::vector<std::pair<std::string, std::string>> contents;
  for (const BackedUpFile& file : set.files) {
    contents.emplace_back(file.name,
                          naming(file.backup, [&] { return files.read(path / file.backup); }));
  }
  StoppedClock clock(lastFreeTimestamp(files, path, platform.clock.unixTime()));
  // No file counts as written by the wizard, so every one is backed up.
  ProjectOnDisk nothingKnown;
  TableWriter tables(files, clock, path, nothingKnown);
  Restored restored;
  const auto attempt = [&](const std::string& name, const auto& action) {
    try {
      action();
    } catch (const Failure& failure) {
      restored.failure = name + ": " + failure.what();
    }
  };
  for (const auto& content : contents) {
    const std::string& name = content.first;
    attempt(name, [&, file = path / name] {
      if (!isRestored(files, file, content.second)) tables.replace(file, content.second);
      restored.files.push_back(name);
    });
    if (!restored.failure.empty()) break;
  }
  for (std::size_t next = restored.files.size(); next < contents.size(); ++next) {
    restored.missing.push_back(contents[next].first);
  }
  files.removeStaleTemporaryFiles(path);
  if (restored.failure.empty()) attempt(path.native, [&] { files.flushAll(path); });
  for (const ExternalChange& change : nothingKnown.externalChanges) {
    restored.kept.push_back(change.backup);
  }
  return restored;
}

}  // namespace kova
