// SPDX-License-Identifier: MIT
#include "review/backup_sets.h"

#include "project_tool/diff_text.h"

namespace kova {
namespace {

BackupSet chosenSet(const Tool& tool, const Path& folder, const RestoreOptions& options) {
  const auto set = findBackupSet(backupSets(*tool.machine.files, folder), options.timestamp);
  if (!set) throw Failure("there is no backup of " + std::to_string(options.timestamp));
  return partOf(*set, options.files);
}

void printList(const Tool& tool, const std::string& title, const std::vector<std::string>& names) {
  for (const std::string& name : names) tool.printLine(title + name);
}

}  // namespace

ExitStatus backups(const Tool& tool, const std::string& directory) {
  const Path folder = tool.folder(directory);
  const std::int32_t now = tool.machine.clock->unixTime();
  for (const BackupSet& set : backupSets(*tool.machine.files, folder)) {
    tool.printLine(std::to_string(set.first) + "  " + localTime(set.first) + "  " +
                   ageText(set.first, now) + " ago");
    for (const BackedUpFile& file : set.files) {
      tool.printLine("  " + file.name + ", " + std::to_string(file.bytes) + " bytes");
    }
  }
  return ExitStatus::noFindings;
}

ExitStatus restore(const Tool& tool, const RestoreOptions& options) {
  const Path folder = tool.folder(options.directory);
  const BackupSet set = chosenSet(tool, folder, options);
  if (options.dryRun) {
    const FileSystem& files = *tool.machine.files;
    const ProjectFiles after = filesOf(files, folder, set);
    ProjectFiles before = projectFiles(files, folder);
    std::erase_if(before, [&](const auto& file) { return !after.contains(file.first); });
    for (const FileDifference& file : compareProjects(before, after)) printDifference(tool, file);
    return ExitStatus::noFindings;
  }
  const Restored restored =
      restore(tool.machine.platform(), tool.wizardText(options.directory), set);
  printList(tool, "restored ", restored.files);
  printList(tool, "kept as ", restored.kept);
  if (restored.failure.empty()) return ExitStatus::noFindings;
  printList(tool, "not restored ", restored.missing);
  tool.printError(restored.failure);
  return ExitStatus::error;
}

}  // namespace kova
