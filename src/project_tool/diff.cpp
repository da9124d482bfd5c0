// SPDX-License-Identifier: MIT
#include "project_tool/diff_text.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <limits>

#include "review/backup_sets.h"

namespace kova {
namespace {

struct States {
  ProjectFiles before;
  ProjectFiles after;
};

bool isTimestamp(const std::string& text) {
  constexpr std::size_t longestTimestamp = 10;
  return !text.empty() && text.size() <= longestTimestamp &&
         std::all_of(text.begin(), text.end(),
                     [](unsigned char digit) { return std::isdigit(digit) != 0; }) &&
         std::stoll(text) <= std::numeric_limits<std::int32_t>::max();
}

/// The files of a backup set, then and now.
States sinceBackups(const Tool& tool, const Path& folder, const std::string& timestamp) {
  const FileSystem& files = *tool.machine.files;
  const auto sets = backupSets(files, folder);
  if (sets.empty()) throw Failure(folder.native + " has no backups");
  const auto set = timestamp.empty()
                       ? std::optional(sets.front())
                       : findBackupSet(sets, static_cast<std::int32_t>(std::stoll(timestamp)));
  if (!set) throw Failure("there is no backup of " + timestamp);
  States states{filesOf(files, folder, *set), projectFiles(files, folder)};
  std::erase_if(states.after,
                [&](const auto& file) { return !states.before.contains(file.first); });
  return states;
}

}  // namespace

void printDifference(const Tool& tool, const FileDifference& file) {
  tool.printLine(mark(file.sign) + (' ' + file.name));
  for (const RowChange& row : file.rows) {
    tool.printLine(std::string("  ") + mark(row.sign) + ' ' + tool.shown(textOf(row)));
  }
  for (const std::string& message : file.formatting) {
    tool.printLine("  " + tool.shown(message));
  }
}

ExitStatus diff(const Tool& tool, const DiffOptions& options) {
  const FileSystem& files = *tool.machine.files;
  const Path folder = tool.folder(options.directory);
  const bool isOlder = options.other.empty() ||
                       (isTimestamp(options.other) && !files.folderExists(Path{options.other}));
  const States states = isOlder ? sinceBackups(tool, folder, options.other)
                                : States{projectFiles(files, folder),
                                         projectFiles(files, tool.folder(options.other))};
  const auto differences = compareProjects(states.before, states.after);
  for (const FileDifference& file : differences) printDifference(tool, file);
  return differences.empty() ? ExitStatus::noFindings : ExitStatus::findings;
}

}  // namespace kova
