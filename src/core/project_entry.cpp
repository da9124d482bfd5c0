// SPDX-License-Identifier: MIT
#include "core/project_entry.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "core/status.h"
#include "tables/number_text.h"

namespace kova {
namespace {

// Names one table and not the value of exportsFileName: what makes a directory a project is fixed.
constexpr std::string_view projectMark = "exports.csv";

// Rows may name other servers' directories, whose rows name further ones. No real project nests
// more than once or twice; a chain of directories must not exhaust the stack.
constexpr std::size_t deepestEntry = 16;

/// Notes a directory as being entered for as long as it lives.
class EntryInProgress {
 public:
  EntryInProgress(WizardState& state, const std::string& directory) : state_(state) {
    state_.directoriesBeingEntered.push_back(directory);
  }
  EntryInProgress(const EntryInProgress&) = delete;
  EntryInProgress& operator=(const EntryInProgress&) = delete;
  EntryInProgress(EntryInProgress&&) = delete;
  EntryInProgress& operator=(EntryInProgress&&) = delete;
  ~EntryInProgress() { state_.directoriesBeingEntered.pop_back(); }

 private:
  WizardState& state_;
};

/// Two servers whose rows name each other would enter one another without end.
bool wouldNestWithoutEnd(const WizardState& state) {
  const auto& entered = state.directoriesBeingEntered;
  return entered.size() >= deepestEntry ||
         std::find(entered.begin(), entered.end(), state.projectPath) != entered.end();
}

std::string withoutTrailingSeparator(std::string text) {
  if (!text.empty() && text.back() == pathSeparator) text.pop_back();
  return text;
}

/// Everything that belonged to the former directory goes; returns the number of live rows dropped.
std::size_t dropTables(Wizard& wizard) {
  WizardState& state = wizard.state;
  wizard.form.PropertyList.clear();
  const auto dropped = static_cast<std::size_t>(state.exportCount);
  const std::size_t staged = std::min(dropped + 1, state.exportTable.size());
  std::fill_n(state.exportTable.begin(), staged, PropertyRecord{});
  state.exportCount = 0;
  state.historyCount = 0;
  state.alarmCount = 0;
  state.historyInUse = false;
  state.stampsAtEntry.clear();
  state.removedRows = 0;
  return dropped;
}

std::string droppedSentence(std::size_t rows) {
  if (rows == 0) return {};
  return counted(rows, "row", "rows") + " dropped by the change of directory. ";
}

std::string readSentence(const Wizard& wizard, const BackupResult& backups,
                         std::size_t deviceNames) {
  const WizardState& state = wizard.state;
  const auto rows = [](std::int16_t count) { return static_cast<std::size_t>(count); };
  return "Project read: " + counted(rows(state.exportCount), "property", "properties") + ", " +
         counted(rows(state.historyCount), "history row", "history rows") + ", " +
         counted(rows(state.alarmCount), "alarm watch row", "alarm watch rows") + ", " +
         counted(deviceNames, "device name", "device names") + "; " +
         counted(backups.copied, "backup", "backups") + " made.";
}

void readProject(Wizard& wizard, const Path& exportsFile, const std::string& before) {
  WizardState& state = wizard.state;
  FileSystem& files = wizard.platform.files;
  BackupResult backups = backupExistingFiles(files, wizard.platform.clock,
                                             files.path(state.projectPath), wizard.progress);
  state.stampsAtEntry = std::exchange(backups.stamps, {});

  const std::string directory = state.projectPath;
  const ReadResult exports = getExistingProject(wizard, exportsFile);
  // The last row may name another server, whose directory was then entered in place of this one.
  const bool gone = state.projectPath != directory || state.exportCount != exports.rows;
  const std::string dropped = droppedSentence(gone ? static_cast<std::size_t>(exports.rows) : 0);
  const Path historyFile = files.path(projectFile(wizard, historyFileName));
  const ReadResult history =
      ReadHistoryFile(files, historyFile, state.historyTable, state.historyCount);
  if (!history.stop) state.historyInUse = true;
  const Path alarmFile = files.path(projectFile(wizard, alarmFileName));
  const ReadResult alarms =
      ReadAlarmWatchFile(files, alarmFile, state.alarmTable, state.alarmCount);
  const std::string devicesName = significantLocalName(wizard) + "-devices.csv";
  const ReadResult devices = ReadDevicesFile(files, state.projectPath, devicesName,
                                             wizard.form.NumDevices.text(), state.deviceNames);
  if (devices.rows > 0) state.deviceNamesDefined = true;
  state.localNameEdited = true;

  report(wizard, before + dropped +
                     readSentence(wizard, backups, static_cast<std::size_t>(devices.rows)) +
                     stopSentence(files, exportsFile, projectMark, exports) +
                     stopSentence(files, historyFile, historyFileName, history) +
                     stopSentence(files, alarmFile, alarmFileName, alarms) +
                     stopSentence(devicesName, devices));
}

void enterProject(Wizard& wizard) {
  WizardState& state = wizard.state;
  const std::string directory = wizard.form.ProjectDir.text();
  state.projectPath = withoutTrailingSeparator(directory);
  const std::string dropped = droppedSentence(dropTables(wizard));
  if (!dropped.empty()) report(wizard, dropped);
  if (directory.empty() || wouldNestWithoutEnd(state)) return;
  const EntryInProgress inProgress(state, state.projectPath);
  const Path exportsFile = wizard.platform.files.path(projectFile(wizard, projectMark));
  if (wizard.platform.files.fileExists(exportsFile)) readProject(wizard, exportsFile, dropped);
}

}  // namespace

std::string projectFile(const Wizard& wizard, std::string_view name) {
  return wizard.state.projectPath + pathSeparator + std::string(name);
}

void ProjectDir_Change(Wizard& wizard) {
  try {
    enterProject(wizard);
  } catch (const Failure& failure) {
    report(wizard, "Project not read: " + std::string(failure.what()) + ".");
  }
}

void ProjectDir_Click(Wizard& wizard) {
  wizard.state.projectDirEdited = true;
}

ReadResult getExistingProject(Wizard& wizard, const Path& fileName) {
  WizardState& state = wizard.state;
  Form1& form = wizard.form;
  std::int32_t slot = state.exportCount;
  std::string converted;
  std::string shown;
  ReadResult result = readExportTable(wizard.platform.files, fileName, [&](PropertyRecord&& read) {
    exportRow(wizard, slot);  // fails where the table is full
    // As a rule all rows have the same number.
    if (shown.empty() || read.numModules != converted) {
      shown = signedNumberText(read.numModules);
      converted = read.numModules;
    }
    std::string line = listLine(read, read.description);
    PropertyRecord& row = exportRow(wizard, slot);
    row = std::move(read);
    row.onDisk = true;
    ++slot;
    form.NumDevices.setText(shown);
    form.PropertyList.add(std::move(line));
  });
  state.exportCount = static_cast<std::int16_t>(slot);
  if (result.rows > 0) {
    form.PropertyList.select(static_cast<std::int32_t>(form.PropertyList.lines().size()) - 1);
  }
  return result;
}

}  // namespace kova
