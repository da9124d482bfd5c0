// SPDX-License-Identifier: MIT
#include "completion/names_files.h"

#include <map>

namespace kova {
namespace {

/// Names that lead elsewhere are told when their turn comes.
bool isBareName(std::string_view name) {
  return name.find(pathSeparator) == std::string_view::npos &&
         name.find('\0') == std::string_view::npos;
}

}  // namespace

std::optional<UnwritableFile> findUnwritableNamesFile(Wizard& wizard, const Path& folder) {
  const FileSystem& files = wizard.platform.files;
  std::map<std::string, std::string> names;  // by what a disk that ignores case makes of them
  std::optional<bool> ignoresCase;
  for (std::int16_t i = 0; i < wizard.state.exportCount; ++i) {
    const PropertyRecord& row = exportRow(wizard, i);
    const std::string name = namesFile(row.propertyName);
    if (!row.hasDeviceList || !isBareName(name)) continue;
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
