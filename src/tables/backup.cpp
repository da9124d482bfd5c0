// SPDX-License-Identifier: MIT
#include "tables/backup.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace kova {

namespace {

// Behind the dash of names that the wizard's own files have; that dash leads no stamp.
constexpr std::array<std::string_view, 4> keywords{"names", "alarm", "devic", "prope"};

// Stamps of the years 1973 to 2038: shorter numbers are numbers of channels, days, versions.
constexpr std::int64_t smallestStamp = 100'000'000;
constexpr std::int64_t largestStamp = 2'147'483'647;
constexpr std::size_t stampDigits = 10;

std::string_view baseOf(std::string_view name) {
  return name.substr(0, name.find('.'));
}

std::optional<std::string_view> behindFirstDash(std::string_view text) {
  const auto dash = text.find('-');
  if (dash == std::string_view::npos) return std::nullopt;
  return text.substr(dash + 1);
}

bool startsWithKeyword(std::string_view text) {
  return std::any_of(keywords.begin(), keywords.end(),
                     [&](std::string_view keyword) { return text.starts_with(keyword); });
}

std::optional<std::int64_t> stampIn(std::string_view text) {
  std::int64_t stamp = 0;
  const auto* end = text.data() + text.size();
  if (text.empty() || text.size() > stampDigits || text.front() == '-') return std::nullopt;
  if (std::from_chars(text.data(), end, stamp).ptr != end) return std::nullopt;
  if (stamp < smallestStamp || stamp > largestStamp) return std::nullopt;
  return stamp;
}

std::optional<std::int64_t> stampOf(std::string_view base) {
  auto rest = behindFirstDash(base);
  if (startsWithKeyword(rest.value_or(base))) rest = behindFirstDash(rest.value_or(base));
  if (const auto stamp = stampIn(rest.value_or(""))) return stamp;
  // A backup of a file that has a dash in its own name.
  const auto lastDash = base.rfind('-');
  return lastDash == std::string_view::npos ? std::nullopt : stampIn(base.substr(lastDash + 1));
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
  const auto entry = [&](const std::string& name) {
    return Path{directory.native + pathSeparator + name};
  };
  std::size_t done = 0;
  for (const auto& name : files.plainFiles(directory)) {
    const Path file = entry(name);
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
        files.copy(file, entry(backupName(name, clock.unixTime())));
        ++result.copied;
        break;
    }
    ++done;
    if (progress) progress(done);
  }
  return result;
}

}  // namespace kova
