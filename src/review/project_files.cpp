// SPDX-License-Identifier: MIT
#include "review/project_files.h"

#include <limits>

#include "review/table_text.h"
#include "tables/backup.h"

namespace kova {

std::vector<std::string> filesInUse(const FileSystem& files, const Path& folder) {
  std::vector<std::string> inUse;
  // At the latest time every backup counts as old, and none has too few digits.
  constexpr std::int32_t endOfTime = std::numeric_limits<std::int32_t>::max();
  for (const auto& [name, verdict] : classifyFiles(files, folder, endOfTime)) {
    if (verdict == FileVerdict::inUse) inUse.push_back(name);
  }
  return inUse;
}

ProjectFiles projectFiles(const FileSystem& files, const Path& folder) {
  ProjectFiles tables;
  for (const std::string& name : filesInUse(files, folder)) {
    if (kindOfFile(name) == TableKind::none) continue;
    tables.emplace(name, naming(name, [&] { return files.read(folder / name); }));
  }
  return tables;
}

}  // namespace kova
