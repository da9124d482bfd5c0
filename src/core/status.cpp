// SPDX-License-Identifier: MIT
#include "core/status.h"

namespace kova {
namespace {

/// A number and its noun: "1 row", "3 rows".
std::string counted(std::size_t number, std::string_view singular, std::string_view plural) {
  return std::to_string(number) + " " + std::string(number == 1 ? singular : plural);
}

std::string unwrittenSentence(const WizardState& state) {
  const Unwritten unwritten = findUnwritten(state);
  std::string text;
  const auto count = [&](std::size_t number, std::string_view singular, std::string_view plural) {
    if (number > 0) text += (text.empty() ? " " : ", ") + counted(number, singular, plural);
  };
  count(unwritten.properties, "property", "properties");
  count(unwritten.historyRows, "history row", "history rows");
  count(unwritten.alarmRows, "alarm watch row", "alarm watch rows");
  count(unwritten.deviceNames, "device name", "device names");
  count(unwritten.removals, "removal", "removals");
  return text.empty() ? text : text + " not yet written.";
}

void report(Wizard& wizard, const std::string& sentence) {
  wizard.statusLine.sentence = stripBlanks(sentence);
  if (wizard.statusLine.mirror) wizard.statusLine.mirror();
}

std::string droppedSentence(std::size_t rows) {
  if (rows == 0) return {};
  return counted(rows, "row", "rows") + " dropped by the change of directory. ";
}

std::string deletedPart(std::size_t backups) {
  return counted(backups, "old backup", "old backups") + " deleted";
}

std::string readSentence(const WizardState& state, const ProjectRead& project) {
  const auto rows = [](std::int16_t count) { return static_cast<std::size_t>(count); };
  return "Project read: " + counted(rows(state.exportCount), "property", "properties") + ", " +
         counted(rows(state.historyCount), "history row", "history rows") + ", " +
         counted(rows(state.alarmCount), "alarm watch row", "alarm watch rows") + ", " +
         counted(rows(project.devices.result.rows), "device name", "device names") + "; " +
         counted(project.backups, "backup", "backups") + " made" +
         (project.backupsDeleted > 0 ? ", " + deletedPart(project.backupsDeleted) : "") + ".";
}

/// Where the rows have led, if that was too far.
std::string refusedSentence(const WizardState& state) {
  if (!state.refusedEntry) return {};
  const auto& [exportName, directory, tooDeep] = *state.refusedEntry;
  return " Project " + exportName + " not read: " +
         (tooDeep ? "too many projects lead to one another by the export names of their last rows"
                  : "this export name of the last row is no plain name of a directory in " +
                        state.homeDrive) +
         ". Click into Project Directory and type " + directory + ".";
}

std::string backupTroubleSentence(const BackupFailure& failure) {
  const std::string why = failure.file() + ": " + failure.what() + ". ";
  if (failure.trouble() == BackupTrouble::notDeleted) {
    return "old backup " + why + "Delete the file or ask its owner to.";
  }
  return "backup of " + why +
         "Move the file away, or see that it is readable and that the directory is writable and "
         "has room.";
}

/// Where and why a reader did not come to the end of a file; empty if it did or found no file.
std::string stopSentence(const FileSystem& files, const FileRead& file) {
  const auto& stop = file.result.stop;
  const std::string name(file.name);
  if (file.result.onlyLineFeeds) return " Nothing to read: no line of " + name + " ends in CR.";
  if (!stop) return {};
  if (stop->line > 0) {
    return " Reading " + name + " stopped at line " + std::to_string(stop->line) + ": " +
           stop->reason + ".";
  }
  const bool isThere = files.fileExists(file.path) || files.folderExists(file.path);
  return isThere ? " " + name + " can't be read: " + stop->reason + "." : "";
}

std::string foreignSentences(const WizardState& state) {
  std::string text;
  if (state.onDisk.notWaitedFor) {
    text += " Another wizard is finishing this project as well; it was waited for in vain.";
  }
  for (const ForeignChange& change : state.onDisk.foreignChanges) {
    text += " What somebody else has written to " + change.file + " since is kept as " +
            change.backup + ".";
  }
  return text;
}

}  // namespace

std::string statusText(const Wizard& wizard) {
  return wizard.statusLine.sentence + unwrittenSentence(wizard.state);
}

void reportStart(Wizard& wizard, const std::string& notUsed) {
  std::string now = wizard.statusLine.sentence;
  if (now.empty() && !wizard.state.homeDrive.empty()) {
    now = "Type an export name to define its server or to open its project.";
  }
  report(wizard, notUsed + now);
}

void reportDropped(Wizard& wizard, std::size_t rows) {
  if (rows > 0) report(wizard, droppedSentence(rows));
}

void reportProjectRead(Wizard& wizard, const ProjectRead& project) {
  std::string text = droppedSentence(project.dropped) + droppedSentence(project.droppedAgain) +
                     readSentence(wizard.state, project);
  for (const FileRead* file :
       {&project.exports, &project.history, &project.alarms, &project.devices}) {
    text += stopSentence(wizard.platform.files, *file);
  }
  report(wizard, text + refusedSentence(wizard.state));
}

void reportNotBackedUp(Wizard& wizard, const BackupFailure& failure) {
  const std::size_t deleted = failure.deleted();
  report(wizard, "Project not read: " + backupTroubleSentence(failure) +
                     (deleted > 0 ? " " + deletedPart(deleted) + "." : ""));
}

void reportProjectNotRead(Wizard& wizard, std::string_view reason) {
  report(wizard, "Project not read: " + std::string(reason) + ".");
}

void reportCommit(Wizard& wizard, const std::string& property, bool isNew) {
  report(wizard, "Property " + property + (isNew ? " added." : " replaced."));
}

void reportProcessCommit(Wizard& wizard, const std::string& property) {
  report(wizard, "Process property " + property + " added as 5 rows.");
}

void reportRemoval(Wizard& wizard, const std::string& property) {
  report(wizard, "Property " + property + " removed.");
}

void reportRepositoryNotUsed(Wizard& wizard, const std::string& notUsed) {
  report(wizard, notUsed + "The tables are not copied.");
}

void reportForeignChanges(Wizard& wizard) {
  report(wizard, foreignSentences(wizard.state));
}

void reportNotFinished(Wizard& wizard) {
  report(wizard, "The project is not finished." + foreignSentences(wizard.state));
}

}  // namespace kova
