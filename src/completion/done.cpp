// SPDX-License-Identifier: MIT
#include "completion/done.h"

#include <functional>
#include <string_view>
#include <utility>

#include "completion/export_file.h"
#include "completion/generators.h"
#include "core/environment_values.h"
#include "core/form_texts.h"
#include "core/program_end.h"
#include "core/project_entry.h"
#include "core/status.h"

namespace kova {
namespace {

constexpr const char* serverDevicesFile = "devices.csv";

/// A writer has failed: the file stays as it was and the sequence ends.
class WritingFailed : public Failure {
 public:
  using Failure::Failure;
};

/// Where the tables are copied to; no path if they are not.
struct Repository {
  std::string path;      ///< with a trailing separator
  bool isFolder = true;  ///< the local name names a folder of the repository
};

bool namesFolder(const std::string& name) {
  return !name.empty() && name != "." && name != ".." &&
         name.find(pathSeparator) == std::string::npos;
}

Repository repositoryOf(Wizard& wizard) {
  auto [root, notUsed] = repositoryRoot(wizard.platform.environment);
  if (!notUsed.empty()) report(wizard, notUsed + "The tables are not copied.");
  if (root.empty()) return {};
  if (root.back() != pathSeparator) root += pathSeparator;
  const std::string& localName = wizard.state.exportTable.front().localName;
  return {root + localName + pathSeparator, namesFolder(localName)};
}

bool isToBeUpdated(const Wizard& wizard, const Repository& repository) {
  if (repository.path.empty()) return false;
  return wizard.messageBox(
             {.text = "Do you want to update the database files under " + repository.path + " ?",
              .buttons = Buttons::yesNo,
              .title = "Write to FEC_HOME repository?",
              .enter = Answer::no}) == Answer::yes;
}

void couldNotCopy(const Wizard& wizard, const std::string& source, const std::string& dest,
                  const std::string& why) {
  tell(wizard, "Couldn't copy " + source + " to " + dest + " : " + why);
}

/// Writes every table and copies it. Throws WritingFailed; nothing further is written then.
class Finishing {
 public:
  Finishing(Wizard& wizard, Repository repository)
      : wizard_(wizard), state_(wizard.state), repository_(std::move(repository)) {}

  void run() {
    writeExports();
    writeHistory();
    writeAlarms();
    copy(state_.exportsFileName);
    copy(std::string(historyFileName));
    copy(std::string(alarmFileName));
    if (state_.deviceNamesDefined) writeDevices(serverDevicesFile, state_.deviceNames);
    for (std::int16_t i = 0; i < state_.exportCount; ++i) {
      PropertyRecord& row = exportRow(wizard_, i);
      if (row.hasDeviceList) writeDevices(row.propertyName + "-names.csv", row.devices);
    }
    write(state_.projectPath, [&] { files().flushFolder(pathOf("")); });
  }

 private:
  FileSystem& files() const { return wizard_.platform.files; }
  std::string fileName(std::string_view name) const { return projectFile(wizard_, name); }
  Path pathOf(std::string_view name) const { return files().path(fileName(name)); }

  /// Runs one writer. `name` is the bare name of its file.
  static void write(const std::string& name, const std::function<void()>& writer) {
    try {
      writer();
    } catch (const Failure& failure) {
      throw WritingFailed("Could not write " + name + " : " + failure.what());
    }
  }

  /// Runs the writer of a whole file; what somebody else wrote there is kept.
  void writeTable(const std::string& name, const std::function<void()>& writer) {
    write(name, [&] { replaceTable(wizard_, fileName(name), writer); });
    countFile();
  }

  void writeExports() {
    write(state_.exportsFileName,
          [&] { writeExportRows(wizard_, fileName(state_.exportsFileName)); });
    countFile();
  }

  void writeHistory() {
    if (!state_.historyInUse) return;
    writeTable(std::string(historyFileName), [&] {
      WriteHistoryFile(files(), pathOf(historyFileName), state_.historyTable, state_.historyCount,
                       historyForm(wizard_));
    });
  }

  void writeAlarms() {
    if (state_.alarmCount < 1) return;
    writeTable(std::string(alarmFileName), [&] {
      WriteAlarmWatchFile(files(), pathOf(alarmFileName), state_.alarmTable, state_.alarmCount);
    });
  }

  void writeDevices(const std::string& name, DeviceNames& devNames) {
    // A name that leads out of the directory is refused before anything is looked at there.
    write(name, [&] { fileInFolder(files(), state_.projectPath, name); });
    writeTable(name, [&] { WriteDevicesFile(files(), state_.projectPath, name, devNames); });
    copy(name);
  }

  void copy(const std::string& name) {
    if (repository_.path.empty()) return;
    if (repository_.isFolder) {
      copyCsvFile(wizard_, fileName(name), repository_.path);
    } else if (files().fileExists(pathOf(name))) {
      couldNotCopy(wizard_, fileName(name), repository_.path,
                   "the local name names no folder of its own");
    }
    countFile();
  }

  void countFile() {
    ++done_;
    if (wizard_.progress) wizard_.progress(done_);
  }

  Wizard& wizard_;
  WizardState& state_;
  Repository repository_;
  std::size_t done_ = 0;
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

void Command1_Click(Wizard& wizard) {
  if (wizard.state.exportCount == 0) return leaveEmptyProject(wizard);
  Repository repository = repositoryOf(wizard);
  if (!isToBeUpdated(wizard, repository)) repository.path.clear();
  putHeader(wizard, projectFile(wizard, wizard.state.exportsFileName));
  if (!wizard.state.exportStream) return;
  wizard.state.foreignChanges.clear();
  try {
    Finishing(wizard, std::move(repository)).run();
  } catch (const WritingFailed& failure) {
    report(wizard, "The project is not finished." + wizard.state.foreignChanges);
    return tell(wizard, failure.what());
  }
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
    const std::string leaf = source.substr(source.rfind(pathSeparator) + 1);
    replace(files, files.path(dest + leaf), files.read(from));
  } catch (const Failure& failure) {
    couldNotCopy(wizard, source, dest, failure.what());
  }
}

}  // namespace kova
