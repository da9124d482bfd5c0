// SPDX-License-Identifier: MIT
#include "completion/device_list_checks.h"

#include <map>

#include "tables/backup.h"

namespace kova {

std::optional<UnwritableFile> findUnwritableNamesFile(const FileSystem& files,
                                                      const Project& project, const Path& folder) {
  std::map<std::string, std::string> names;  // by the name without case
  std::optional<bool> ignoresCase;
  for (const PropertyRecord& row : liveRows(project.exportTable, project.exportCount)) {
    const std::string name = namesFile(row.propertyName);
    // A name that leads to another directory is reported when its file is written.
    if (!row.hasDeviceList || !namesPlainFile(name)) continue;
    // A file without a backup would keep the project from being opened again.
    if (!files.nameFits(folder, files.path(backupName(name, lastTimestamp)).native)) {
      return UnwritableFile{name, "the disk can't hold a file of this name and its backup"};
    }
    const std::string& first = names.emplace(files.withoutCase(name), name).first->second;
    if (first == name) continue;
    if (!ignoresCase) ignoresCase = files.ignoresCase(folder);
    if (*ignoresCase) return UnwritableFile{name, "the disk can't distinguish it from " + first};
  }
  return std::nullopt;
}

}  // namespace kova
