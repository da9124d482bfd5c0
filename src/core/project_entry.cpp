// SPDX-License-Identifier: MIT
#include "core/project_entry.h"

#include <algorithm>
#include <cstddef>
#include <new>
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

/// Two servers whose rows name each other would enter one another without end.
bool isBeingEntered(const WizardState& state) {
  const auto& entered = state.directoriesBeingEntered;
  return std::find(entered.begin(), entered.end(), state.projectPath) != entered.end();
}

/// What a row may lead to: a table must not take the wizard to directories of others.
bool liesDirectlyInHomeDrive(const WizardState& state, std::string_view directory) {
  const std::string parent = state.homeDrive + pathSeparator;
  if (!directory.starts_with(parent)) return false;
  return namesPlainFile(directory.substr(parent.size()));
}

/// False where a row leads too far; that is noted.
bool mayBeEntered(Wizard& wizard, std::string_view directory) {
  WizardState& state = wizard.state;
  const std::size_t depth = state.directoriesBeingEntered.size();
  if (depth == 0) return true;
  const bool tooDeep = depth >= deepestEntry;
  if (!tooDeep && liesDirectlyInHomeDrive(state, directory)) return true;
  state.refusedEntry =
      RefusedEntry{wizard.form.ExportName.text(), state.directoriesBeingEntered.front(), tooDeep};
  return false;
}

std::string withoutTrailingSeparator(std::string text) {
  const bool isTrailed =
      !text.empty() && pathSeparators.find(text.back()) != std::string_view::npos;
  if (isTrailed) text.pop_back();
  return text;
}

/// What goes with the former directory and can't be had back from it.
Dropped findDropped(const Wizard& wizard) {
  const WizardState& state = wizard.state;
  const Form1& form = wizard.form;
  Dropped dropped{.hadRows = state.exportCount > 0, .unwritten = findDroppable(state)};
  const bool hasStage = state.exportCount < tableRows;
  if (form.DeviceListCheck.ticked() && hasStage &&
      rowOf(state.exportTable, state.exportCount).hasDeviceList) {
    dropped.preparedList = form.PropertyName.text();
  }
  return dropped;
}

/// Everything that belonged to the former directory goes.
void dropTables(Wizard& wizard) {
  WizardState& state = wizard.state;
  wizard.form.PropertyList.clear();
  const auto rows = static_cast<std::size_t>(state.exportCount);
  const std::size_t withStage = std::min(rows + 1, state.exportTable.size());
  std::fill_n(state.exportTable.begin(), withStage, PropertyRecord{});
  state.exportCount = 0;
  state.historyCount = 0;
  state.alarmCount = 0;
  state.historyInUse = false;
  state.onDisk = {};
}

/// Done writes the names to one file, and they are read from another.
bool isNotRead(const Wizard& wizard, std::string_view namesFile) {
  const FileSystem& files = wizard.platform.files;
  return files.fileExists(files.path(projectFile(wizard, serverDevicesFile))) &&
         !files.fileExists(files.path(projectFile(wizard, namesFile)));
}

void readProject(Wizard& wizard, const Path& exportsFile, const Dropped& dropped) {
  WizardState& state = wizard.state;
  FileSystem& files = wizard.platform.files;
  const Path folder = files.path(projectDirectory(wizard));
  files.removeLeftovers(folder);
  BackupResult backups = backupExistingFiles(files, wizard.platform.clock, folder, wizard.progress);
  state.onDisk.stamps = std::move(backups.stamps);
  state.onDisk.backupsUnflushed = backups.copied > 0;

  const ReadResult exports = getExistingProject(wizard, exportsFile);
  const Path historyFile = files.path(projectFile(wizard, historyFileName));
  const ReadResult history =
      ReadHistoryFile(files, historyFile, state.historyTable, state.historyCount);
  state.onDisk.historyRows = state.historyCount;
  if (!history.stop) state.historyInUse = true;
  const Path alarmFile = files.path(projectFile(wizard, alarmFileName));
  const ReadResult alarms =
      ReadAlarmWatchFile(files, alarmFile, state.alarmTable, state.alarmCount);
  state.onDisk.alarmRows = state.alarmCount;
  const std::string devicesName = serverNamesFile(significantLocalName(wizard));
  const ReadResult devices = ReadDevicesFile(files, state.projectPath, devicesName,
                                             wizard.form.NumDevices.text(), state.deviceNames);
  if (devices.rows > 0) {
    state.deviceNamesDefined = true;
    state.onDisk.namesRead = PackedTexts(state.deviceNames);
  }
  state.onDisk.deviceNames = namesIn(files, state.projectPath, serverDevicesFile);
  state.localNameEdited = true;

  reportProjectRead(wizard, {.dropped = dropped,
                             .backups = backups.copied,
                             .backupsDeleted = backups.deleted,
                             .exports = {projectMark, exports, exportsFile},
                             .history = {historyFileName, history, historyFile},
                             .alarms = {alarmFileName, alarms, alarmFile},
                             .devices = {devicesName, devices},
                             .writtenNamesNotRead = isNotRead(wizard, devicesName)});
}

void enterProject(Wizard& wizard) {
  WizardState& state = wizard.state;
  const std::string directory = wizard.form.ProjectDir.text();
  state.projectPath = withoutTrailingSeparator(directory);
  const Dropped dropped = findDropped(wizard);
  dropTables(wizard);
  reportDropped(wizard, dropped);
  if (directory.empty() || isBeingEntered(state) || !mayBeEntered(wizard, directory)) return;
  state.directoriesBeingEntered.push_back(state.projectPath);
  const Path exportsFile = wizard.platform.files.path(projectFile(wizard, projectMark));
  if (wizard.platform.files.fileExists(exportsFile)) readProject(wizard, exportsFile, dropped);
}

}  // namespace

std::string projectFile(const Wizard& wizard, std::string_view name) {
  return wizard.state.projectPath + pathSeparator + std::string(name);
}

const std::string& projectDirectory(const Wizard& wizard) {
  const std::string& path = wizard.state.projectPath;
  // The root is all trailing separator: nothing is left of it.
  return path.empty() ? wizard.form.ProjectDir.text() : path;
}

void ProjectDir_Change(Wizard& wizard) {
  const std::size_t depth = wizard.state.directoriesBeingEntered.size();
  if (depth == 0) wizard.state.refusedEntry.reset();
  try {
    enterProject(wizard);
  } catch (const BackupFailure& failure) {
    reportNotBackedUp(wizard, failure);
  } catch (const Failure& failure) {
    reportProjectNotRead(wizard, failure.what());
  } catch (const std::bad_alloc&) {
    reportProjectNotRead(wizard, "not enough memory");
  }
  wizard.state.directoriesBeingEntered.resize(depth);
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
    PropertyRecord& row = exportRow(wizard, slot);  // fails where the table is full
    // As a rule all rows have the same number.
    if (shown.empty() || read.numModules != converted) {
      shown = signedNumberText(read.numModules);
      converted = read.numModules;
    }
    row = std::move(read);
    std::string line = listLine(row, row.description);
    ++slot;
    form.NumDevices.setText(shown);
    form.PropertyList.add(std::move(line));
  });
  state.exportCount = static_cast<std::int16_t>(slot);
  state.onDisk.properties = PackedTexts(state.exportTable, state.exportCount);
  if (result.rows > 0) {
    form.PropertyList.select(static_cast<std::int32_t>(form.PropertyList.lines().size()) - 1);
  }
  return result;
}

}  // namespace kova
