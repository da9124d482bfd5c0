// SPDX-License-Identifier: MIT
#include "tables/backup.h"

#include <charconv>
#include <system_error>

namespace kova {

namespace {

// Of the year 1973; smaller numbers are numbers of channels, days, versions.
constexpr std::int32_t smallestStamp = 100'000'000;
constexpr std::size_t stampDigits = 10;

std::string_view baseOf(std::string_view name) {
  return name.substr(0, name.find('.'));
}

// The number behind the last dash, if it is one of the size of a stamp.
std::optional<std::int32_t> stampOf(std::string_view base) {
  const auto dash = base.rfind('-');
  if (dash == std::string_view::npos) return std::nullopt;
  const auto digits = base.substr(dash + 1);
  const auto* const end = digits.data() + digits.size();
  std::int32_t stamp = 0;
  const auto read = std::from_chars(digits.data(), end, stamp);
  const bool whole = read.ec == std::errc() && read.ptr == end && digits.size() <= stampDigits;
  return whole && stamp >= smallestStamp ? std::optional(stamp) : std::nullopt;
}

}  // namespace

FileVerdict classify(std::string_view name, std::int32_t now) {
  const auto stamp = stampOf(baseOf(name));
  if (!stamp) return FileVerdict::inUse;
  return *stamp < std::int64_t{now} - backupAge ? FileVerdict::backupDeleted
                                                : FileVerdict::backupKept;
}

std::string backupName(std::string_view name, std::int32_t stamp) {
  const auto base = baseOf(name);
  std::string backup(base);
  return (backup += '-' + std::to_string(stamp)).append(name.substr(base.size()));
}

BackupResult backupExistingFiles(FileSystem& files, const Clock& clock, const Path& directory,
                                 const std::function<void(std::size_t)>& progress) {
  BackupResult result;
  const std::int32_t now = clock.unixTime();
  std::size_t done = 0;
  for (const auto& name : files.plainFiles(directory)) {
    const Path file = directory / name;
    switch (classify(name, now)) {
      case FileVerdict::backupKept:
        break;
      case FileVerdict::backupDeleted:
        files.remove(file);
        ++result.deleted;
        break;
      case FileVerdict::inUse:
        // Looked at ahead of the copy, so that a change in between shows as one.
        if (const auto stamp = files.stamp(file))
          result.stamps.emplace_hint(result.stamps.end(), name, *stamp);
        files.copy(file, directory / backupName(name, clock.unixTime()));
        ++result.copied;
        break;
    }
    ++done;
    if (progress) progress(done);
  }
  return result;
}

}  // namespace kova
