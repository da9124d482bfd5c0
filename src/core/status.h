// SPDX-License-Identifier: MIT
// The status line: what just happened and what is not yet on disk. All its messages are here.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "core/wizard.h"

namespace kova {

/// A file of the project and how far its reader came.
struct FileRead {
  std::string_view name;
  ReadResult result;
  /// Where it should be. Without one it is not worth a word that the file can't be opened.
  Path path{};
};

/// What a change of directory has taken away.
struct Dropped {
  bool hadRows = false;  ///< there were rows, be they on disk or not
  Unwritten unwritten{};
  std::string preparedList{};  ///< property whose device list waited for its commit
};

/// What entering a project has brought.
struct ProjectRead {
  Dropped dropped;
  std::size_t backups = 0;
  std::size_t backupsDeleted = 0;
  FileRead exports;
  FileRead history;
  FileRead alarms;
  FileRead devices;
  /// Device names lie in the file that is written, and the one that is read is missing.
  bool writtenNamesNotRead = false;
};

/// What a commit has left as it was although the form says otherwise, or has lost.
struct CommitNotes {
  bool firstHistoryStays = false;  ///< its history row has other settings than the form
  bool furtherAlarmRow = false;    ///< it had an alarm watch row already
  std::size_t linesBeyond = 0;     ///< lines of the device box without a device
};

/// What just happened, and behind it what of the project is not yet on disk at this moment.
std::string statusText(const Wizard& wizard);

/// "2 properties, 1 removal"; empty if there is nothing.
std::string listed(const Unwritten& rows);

/// What a change of directory would drop at this moment; empty if nothing is unwritten.
std::string dropWarning(const WizardState& state);

/// Ahead of what entering the home has brought, values of the environment that are not used.
void reportStart(Wizard& wizard, const std::string& notUsed);
/// The former directory is left. Leaves the line as it is if nothing was there.
void reportDropped(Wizard& wizard, const Dropped& dropped);
void reportProjectRead(Wizard& wizard, const ProjectRead& project);
void reportProjectNotRead(Wizard& wizard, std::string_view reason);
/// A file in the directory kept the project from being read.
void reportNotBackedUp(Wizard& wizard, const BackupFailure& failure);
void reportCommit(Wizard& wizard, const std::string& property, bool isNew,
                  const CommitNotes& notes);
void reportProcessCommit(Wizard& wizard, const std::string& property);
/// `inForm`: the form still holds the whole of it.
void reportRemoval(Wizard& wizard, const std::string& property, bool inForm);
/// Remove without a selected line.
void reportNothingRemoved(Wizard& wizard);
/// A new number of devices has cut names off.
void reportNamesDropped(Wizard& wizard, std::size_t names, std::int16_t devices);
/// Lines of the device box have no device. Leaves the line as it is if there are none.
void reportLinesBeyond(Wizard& wizard, std::size_t lines);
/// The reader of a property's device names has passed over some.
void reportNamesSkipped(Wizard& wizard, const std::string& file, std::size_t names);
/// No device list could be made, and the tick is taken back.
void reportNoList(Wizard& wizard, const std::string& why);
/// The focus on a field of one kind of alarm has set the fields of the other kind to 0.
void reportThresholdsCleared(Wizard& wizard);
void reportMaskCleared(Wizard& wizard);
/// The guided dialog has changed the number of devices. What was said ahead of it stays.
void reportGuidedDevices(Wizard& wizard, const std::string& former, const std::string& now);
/// What is not yet on disk has changed without a message of its own.
void refreshStatus(Wizard& wizard);
/// All tables are on disk; what there was to say of them stays.
void reportAllWritten(Wizard& wizard);
/// Done copies nothing, since what names the repository is not used.
void reportRepositoryNotUsed(Wizard& wizard);
/// Tables that somebody else has written, as far as Done has come.
void reportExternalChanges(Wizard& wizard);
/// Ahead of what entering the project anew has brought.
void reportRestored(Wizard& wizard, std::size_t files);
/// Done has ended ahead of its time.
void reportNotFinished(Wizard& wizard);

}  // namespace kova
