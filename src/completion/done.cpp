// SPDX-License-Identifier: MIT
#include "completion/done.h"

#include <functional>
#include <string_view>

#include "completion/export_file.h"
#include "completion/generators.h"
#include "completion/names_files.h"
#include "completion/table_gate.h"
#include "core/environment_values.h"
#include "core/form_texts.h"
#include "core/program_end.h"
#include "core/project_entry.h"
#include "core/status.h"

namespace kova {
namespace {

/// A writer has failed: the file stays as it was and the sequence ends.
class WritingFailed : public Failure {
 public:
  using Failure::Failure;
};

/// Folder of this server in the repository, with a trailing separator; empty if there is no
/// repository or if the server has no local name, without which it has no folder there.
std::string repositoryPathOf(Wizard& wizard) {
  const std::string& localName = wizard.state.exportTable.front().localName;
  if (localName.empty()) return {};
  auto [root, notUsed] = repositoryRoot(wizard.platform.environment);
  wizard.state.onDisk.repositoryNotUsed = notUsed;
  if (!notUsed.empty()) reportRepositoryNotUsed(wizard);
  if (root.empty()) return {};
  if (pathSeparators.find(root.back()) == std::string_view::npos) root += pathSeparator;
  return root + localName + pathSeparator;
}

bool isToBeUpdated(const Wizard& wizard, const std::string& repositoryPath) {
  if (repositoryPath.empty()) return false;
  return wizard.messageBox(
             {.text = "Do you want to update the database files under " + repositoryPath + " ?",
              .buttons = Buttons::yesNo,
              .title = "Write to FEC_HOME repository?",
              .enter = Answer::no}) == Answer::yes;
}

void couldNotCopy(const Wizard& wizard, const std::string& source, const std::string& dest,
                  const std::string& why) {
  tell(wizard, "Couldn't copy " + source + " to " + dest + " : " + why);
}

/// Writes every table and copies it. Throws WritingFailed; nothing further is written then.
struct Finishing {
  Wizard& wizard;
  const std::string repositoryPath;
  bool writeRepository = false;
  TableGate gate{wizard};
  std::size_t done = 0;  ///< files

  void run() {
    WizardState& state = wizard.state;
    checkNames();
    flushBackups();
    writeExports();
    writeHistory();
    writeAlarms();
    copy(state.exportsFileName);
    copy(std::string(historyFileName));
    copy(std::string(alarmFileName));
    if (state.deviceNamesDefined) {
      state.onDisk.deviceNames = writeDevices(std::string(serverDevicesFile), state.deviceNames);
    }
    for (std::int16_t i = 0; i < state.exportCount; ++i) {
      PropertyRecord& row = exportRow(wizard, i);
      if (!row.hasDeviceList) continue;
      state.onDisk.nameLists[row.propertyName] =
          writeDevices(namesFile(row.propertyName), row.devices);
    }
    // Tables that stayed since they held the same bytes may be as others have left them.
    write(projectDirectory(wizard), [&] { files().flushAll(pathOf("")); });
    flushRepository();
  }

 private:
  FileSystem& files() const { return wizard.platform.files; }
  const std::string& localName() const { return wizard.state.exportTable.front().localName; }
  std::string fileName(std::string_view name) const { return projectFile(wizard, name); }
  /// Throws Failure for a name that leads out of the directory.
  Path pathOf(std::string_view name) const {
    return fileInFolder(files(), wizard.state.projectPath, name);
  }

  [[noreturn]] static void couldNotWrite(const std::string& name, const std::string& why) {
    throw WritingFailed("Could not write " + name + " : " + why);
  }

  /// Runs one writer. `name` is the bare name of its file.
  static void write(const std::string& name, const std::function<void()>& writer) {
    try {
      writer();
    } catch (const Failure& failure) {
      couldNotWrite(name, failure.what());
    }
  }

  /// Nothing is written if something can't be.
  void checkNames() {
    std::optional<UnwritableFile> file;
    write(projectDirectory(wizard), [&] { file = findUnwritableNamesFile(wizard, pathOf("")); });
    if (file) couldNotWrite(file->name, file->why);
  }

  void flushBackups() {
    ProjectOnDisk& disk = wizard.state.onDisk;
    if (!disk.backupsUnflushed) return;
    write(wizard.state.exportsFileName, [&] { files().flushAll(pathOf("")); });
    disk.backupsUnflushed = false;
  }

  void flushRepository() {
    if (!writeRepository || !namesPlainFile(localName())) return;
    const Path folder = files().path(repositoryPath);
    if (!files().folderExists(folder)) return;
    try {
      files().flushAll(folder);
    } catch (const Failure& failure) {
      couldNotCopy(wizard, wizard.state.projectPath, repositoryPath, failure.what());
    }
  }

  /// Runs the writer of a whole file.
  void writeTable(const std::string& name,
                  const std::function<void(const ReplaceFile&, const Path&)>& writer) {
    const ReplaceFile replace = [&](const Path& table, std::string_view content) {
      gate.replace(table, content);
    };
    write(name, [&] { writer(replace, pathOf(name)); });
    countFile();
  }

  void writeExports() {
    const std::string& name = wizard.state.exportsFileName;
    write(name, [&] { writeExportRows(wizard, gate, pathOf(name)); });
    countFile();
  }

  void writeHistory() {
    WizardState& state = wizard.state;
    if (!state.historyInUse) return;
    writeTable(std::string(historyFileName), [&](const auto& replace, const Path& file) {
      WriteHistoryFile(replace, file, state.historyTable, state.historyCount, historyForm(wizard));
    });
    state.onDisk.historyRows = state.historyCount;
  }

  void writeAlarms() {
    WizardState& state = wizard.state;
    if (state.alarmCount < 1) return;
    writeTable(std::string(alarmFileName), [&](const auto& replace, const Path& file) {
      WriteAlarmWatchFile(replace, file, state.alarmTable, state.alarmCount);
    });
    state.onDisk.alarmRows = state.alarmCount;
  }

  PackedTexts writeDevices(const std::string& name, DeviceNames& devNames) {
    writeTable(name, [&](const auto& replace, const Path& file) {
      WriteDevicesFile(replace, file, devNames);
    });
    copy(name);
    return PackedTexts(devNames);
  }

  void copy(const std::string& name) {
    if (!writeRepository) return;
    if (namesPlainFile(localName())) {
      copyCsvFile(wizard, fileName(name), repositoryPath);
    } else if (files().fileExists(pathOf(name))) {
      couldNotCopy(wizard, fileName(name), repositoryPath,
                   "the local name names no folder of its own");
    }
    countFile();
  }

  void countFile() {
    ++done;
    if (wizard.progress) wizard.progress(done);
  }
};

void leaveEmptyProject(Wizard& wizard) {
  const Answer answer =
      wizard.messageBox({.text = "You have not added any properties to your project !\r\n"
                                 "Do you want to exit the Server Setup Wizard ?",
                         .buttons = Buttons::okCancel,
                         .title = "Server Setup Wizard",
                         .enter = Answer::cancel});
  if (answer == Answer::ok) quitApplication(wizard);
}

}  // namespace

bool writeProject(Wizard& wizard, const std::optional<std::string>& repositoryPath) {
  putHeader(wizard, projectFile(wizard, wizard.state.exportsFileName));
  if (!wizard.state.exportStream) return false;
  wizard.state.onDisk.foreignChanges.clear();
  wizard.state.onDisk.notWaitedFor = false;
  try {
    Finishing{wizard, repositoryPath.value_or(std::string()), repositoryPath.has_value()}.run();
  } catch (const WritingFailed& failure) {
    wizard.state.exportStream.reset();
    reportNotFinished(wizard);
    tell(wizard, failure.what());
    return false;
  }
  reportAllWritten(wizard);
  return true;
}

void Command1_Click(Wizard& wizard) {
  if (wizard.state.exportCount == 0) return leaveEmptyProject(wizard);
  const std::string repositoryPath = repositoryPathOf(wizard);
  const bool writeRepository = isToBeUpdated(wizard, repositoryPath);
  if (!writeProject(wizard, writeRepository ? std::optional(repositoryPath) : std::nullopt)) return;
  startGenerators(wizard);
  quitApplication(wizard);
}

void copyCsvFile(const Wizard& wizard, const std::string& source, const std::string& dest) {
  FileSystem& files = wizard.platform.files;
  const Path from = files.path(source);
  if (!files.fileExists(from)) return;
  try {
    const Path folder = files.path(dest);
    if (!files.folderExists(folder)) files.createFolder(folder);
    replace(files, folder / from.leaf(), files.read(from));
  } catch (const Failure& failure) {
    couldNotCopy(wizard, source, dest, failure.what());
  }
}

}  // namespace kova
