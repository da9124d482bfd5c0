// SPDX-License-Identifier: MIT
#include "completion/device_list_checks.h"

#include <map>

namespace kova {

std::optional<UnwritableFile> findUnwritableNamesFile(const FileSystem& files,
                                                      const Project& project, const Path& folder) {
  std::map<std::string, std::string> names;  // by what a disk that ignores case makes of them
  std::optional<bool> ignoresCase;
  for (const PropertyRecord& row : liveRows(project.exportTable, project.exportCount)) {
    const std::string name = namesFile(row.propertyName);
    // Names that lead elsewhere are told when their turn comes.
    if (!row.hasDeviceList || !namesPlainFile(name)) continue;
    if (!files.nameFits(folder, files.path(name).native)) {
      return UnwritableFile{name, "this disk can't hold a file of that name"};
    }
    const std::string& first = names.emplace(files.withoutCase(name), name).first->second;
    if (first == name) continue;
    if (!ignoresCase) ignoresCase = files.ignoresCase(folder);
    if (*ignoresCase) return UnwritableFile{name, "this disk takes it for " + first};
  }
  return std::nullopt;
}

}  // namespace kova
