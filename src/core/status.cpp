// SPDX-License-Identifier: MIT
#include "core/status.h"

#include "tables/quoting.h"

namespace kova {
std::string listed(const Unwritten& rows) {
  std::string text;
  const auto count = [&](std::size_t number, std::string_view singular, std::string_view plural) {
    if (number > 0) text += (text.empty() ? "" : ", ") + counted(number, singular, plural);
  };
  count(rows.properties, "property", "properties");
  count(rows.historyRows, "history row", "history rows");
  count(rows.alarmRows, "alarm watch row", "alarm watch rows");
  count(rows.deviceNames, "device name", "device names");
  count(rows.removals, "removal", "removals");
  return text;
}

namespace {

void report(Wizard& wizard, const std::string& message) {
  wizard.statusLine.message = stripBlanks(message);
  if (wizard.statusLine.notifyView) wizard.statusLine.notifyView();
}

std::string droppedMessage(const Dropped& dropped) {
  const std::size_t rows = dropped.unwritten.rows();
  const std::size_t removals = dropped.unwritten.removals;
  std::string text;
  if (rows > 0) text = counted(rows, "unwritten row");
  if (removals > 0) {
    text += (text.empty() ? "" : " and ") + counted(removals, "unwritten removal");
  }
  if (!text.empty()) text += " dropped by the change of directory. ";
  if (dropped.preparedList.empty()) return text;
  return text + "Device list prepared for " + dropped.preparedList +
         " dropped by the change of directory. ";
}

std::string skippedMessage(std::string_view read, std::string_view written, std::size_t names) {
  if (names == 0) return {};
  return " " + counted(names, "line") + " of " + std::string(read) +
         " skipped: device number out of range. Done writes " + std::string(written) + " without " +
         (names == 1 ? "it." : "them.");
}

std::string linesBeyondMessage(std::size_t lines) {
  if (lines == 0) return {};
  return " " + counted(lines, "line") + " of the device box ignored: more lines than devices.";
}

std::string notesMessage(const CommitNotes& notes) {
  std::string text;
  if (notes.firstHistoryStays) {
    text += " Its history row keeps its earlier settings; those in the form are ignored.";
  }
  if (notes.furtherAlarmRow) text += " It now has another alarm watch row; the earlier ones stay.";
  return text + linesBeyondMessage(notes.linesBeyond);
}

std::string deletedPart(std::size_t backups) {
  return counted(backups, "old backup") + " deleted";
}

std::string readMessage(const WizardState& state, const ProjectRead& project) {
  const auto rows = [](std::int16_t count) { return static_cast<std::size_t>(count); };
  return "Project read: " + counted(rows(state.project.exportCount), "property", "properties") +
         ", " + counted(rows(state.project.historyCount), "history row") + ", " +
         counted(rows(state.project.alarmCount), "alarm watch row") + ", " +
         counted(rows(project.devices.result.rows), "device name") + "; " +
         counted(project.backups, "backup") + " made" +
         (project.backupsDeleted > 0 ? ", " + deletedPart(project.backupsDeleted) : "") + ".";
}

/// Which project the last row of another one leads to, if it was not opened.
std::string refusedMessage(const WizardState& state) {
  if (!state.refusedOpening) return {};
  const auto& [exportName, directory, tooDeep] = *state.refusedOpening;
  return " Project " + exportName + " not read: " +
         (tooDeep ? "too many projects lead to each other through their last rows"
                  : "the last row belongs to " + exportName + ", which is not a directory in " +
                        state.homeDrive) +
         ". Click into Project Directory and type " + directory + ".";
}

std::string backupErrorMessage(const FileSystem& files, const BackupFailure& failure) {
  const std::string why = files.text(failure.file()) + ": " + failure.what() + ". ";
  if (failure.error() == BackupError::notDeleted) {
    return "old backup " + why + "Delete the file or ask its owner to.";
  }
  return "backup of " + why +
         "Move the file away, or make sure that it is readable and that the directory is writable "
         "and has free space.";
}

/// Where and why a reader stopped before the end of a file; empty if it did not or found no file.
std::string stopMessage(const FileSystem& files, const FileRead& file) {
  const auto& stop = file.result.stop;
  const std::string name(file.name);
  if (file.result.onlyLineFeeds) return " Nothing to read: no line of " + name + " ends in CR.";
  if (!stop) return {};
  if (stop->line > 0) {
    return " Reading " + name + " stopped at line " + std::to_string(stop->line) + ": " +
           stop->reason + ".";
  }
  const bool isThere = mayExist(files, file.path) || files.folderExists(file.path);
  return isThere ? " " + name + " can't be read: " + stop->reason + "." : "";
}

std::string doneMessages(const Wizard& wizard) {
  const WizardState& state = wizard.state;
  const FileSystem& files = wizard.platform.files;
  std::string text;
  if (!state.onDisk.repositoryNotUsed.empty()) {
    text = ' ' + state.onDisk.repositoryNotUsed + "The tables are not copied.";
  }
  if (state.onDisk.notWaitedFor) {
    text += " Another wizard is saving this project. Gave up waiting after 3 seconds.";
  }
  for (const ExternalChange& change : state.onDisk.externalChanges) {
    text += " " + files.text(change.file) + " was changed by someone else; that version was saved" +
            " as " + files.text(change.backup) + ".";
  }
  return text;
}

}  // namespace

std::string statusText(const Wizard& wizard) {
  const std::string unwritten = listed(findUnwritten(wizard.state.project, wizard.state.onDisk));
  return wizard.statusLine.message +
         (unwritten.empty() ? unwritten : " " + unwritten + " not yet written.");
}

std::string dropWarning(const WizardState& state) {
  const std::string text = listed(findDroppable(state.project, state.onDisk));
  return text.empty() ? text : "A change here drops " + text + " not yet written.";
}

void reportStart(Wizard& wizard, const std::string& notUsed) {
  std::string now = wizard.statusLine.message;
  if (now.empty() && !wizard.state.homeDrive.empty()) {
    now = "Type an export name to define its server or to open its project.";
  }
  report(wizard, notUsed + now);
}

void reportDropped(Wizard& wizard, const Dropped& dropped) {
  const std::string text = droppedMessage(dropped);
  if (dropped.hadRows || !text.empty()) report(wizard, text);
}

void reportProjectRead(Wizard& wizard, const ProjectRead& project) {
  std::string text = droppedMessage(project.dropped) + readMessage(wizard.state, project);
  for (const FileRead* file :
       {&project.exports, &project.history, &project.alarms, &project.devices}) {
    text += stopMessage(wizard.platform.files, *file);
  }
  text += skippedMessage(project.devices.name, serverDevicesFile, project.devices.result.skipped);
  if (project.writtenNamesNotRead) {
    text += " " + std::string(serverDevicesFile) + " is not read: device names are read from " +
            std::string(project.devices.name) + ", which is missing.";
  }
  report(wizard, text + refusedMessage(wizard.state));
}

void reportNotBackedUp(Wizard& wizard, const BackupFailure& failure) {
  const std::size_t deleted = failure.deleted();
  report(wizard, "Project not read: " + backupErrorMessage(wizard.platform.files, failure) +
                     (deleted > 0 ? " " + deletedPart(deleted) + "." : ""));
}

void reportProjectNotRead(Wizard& wizard, std::string_view reason) {
  report(wizard, "Project not read: " + std::string(reason) + ".");
}

void reportCommit(Wizard& wizard, const std::string& property, bool isNew,
                  const CommitNotes& notes) {
  report(wizard, "Property " + property + (isNew ? " added." : " replaced.") + notesMessage(notes));
}

void reportProcessCommit(Wizard& wizard, const std::string& property) {
  report(wizard, "Process property " + property + " added as 5 rows.");
}

void reportRemoval(Wizard& wizard, const std::string& property, bool inForm) {
  report(wizard, "Property " + property + " removed" + (inForm ? ": Add puts it back." : "."));
}

void reportNothingRemoved(Wizard& wizard) {
  report(wizard, "Nothing removed: no line of the list is selected.");
}

void reportNamesDropped(Wizard& wizard, std::size_t names, std::int16_t devices) {
  report(wizard, counted(names, "device name") + " dropped: the number of devices fell to " +
                     std::to_string(devices) + ".");
}

void reportLinesBeyond(Wizard& wizard, std::size_t lines) {
  if (lines > 0) report(wizard, linesBeyondMessage(lines));
}

void reportNamesSkipped(Wizard& wizard, const std::string& file, std::size_t names) {
  if (names > 0) report(wizard, skippedMessage(file, file, names));
}

void reportNoList(Wizard& wizard, const std::string& why) {
  report(wizard, "Device List cleared: " + why + ".");
}

void reportThresholdsCleared(Wizard& wizard) {
  report(wizard, "The four limits are set to 0: this alarm watches a mask.");
}

void reportMaskCleared(Wizard& wizard) {
  report(wizard, "Mask and normal value are set to 0: this alarm watches limits.");
}

void reportGuidedDevices(Wizard& wizard, const std::string& former, const std::string& now) {
  report(wizard, wizard.statusLine.message + " Guidance changed the number of devices from " +
                     former + " to " + now + ".");
}

void refreshStatus(Wizard& wizard) {
  // Opening a project reports once, when it is complete.
  if (!wizard.state.directoriesBeingOpened.empty()) return;
  if (wizard.statusLine.notifyView) wizard.statusLine.notifyView();
}

void reportAllWritten(Wizard& wizard) {
  report(wizard, "All tables written." + doneMessages(wizard));
}

void reportRepositoryNotUsed(Wizard& wizard) {
  report(wizard, wizard.state.onDisk.repositoryNotUsed + "The tables are not copied.");
}

void reportExternalChanges(Wizard& wizard) {
  report(wizard, doneMessages(wizard));
}

void reportRestored(Wizard& wizard, std::size_t files) {
  report(wizard, counted(files, "file") + " restored. " + wizard.statusLine.message);
}

void reportDraft(Wizard& wizard, const std::string& message) {
  report(wizard, message);
}

void reportNotFinished(Wizard& wizard) {
  report(wizard, "The project is not finished." + doneMessages(wizard));
}

}  // namespace kova
