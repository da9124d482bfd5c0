// SPDX-License-Identifier: MIT
// The status line: the last event and what is not yet on disk.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "core/wizard.h"

namespace kova {

/// A file of the project and the result of its reader.
struct FileRead {
  std::string_view name;
  ReadResult result;
  /// If empty, a file that can't be opened is not reported.
  Path path{};
};

/// What a change of directory has dropped.
struct Dropped {
  bool hadRows = false;  ///< there were rows, on disk or not
  Unwritten unwritten{};
  std::string preparedList{};  ///< property whose device list was not yet committed
};

/// The result of opening a project.
struct ProjectRead {
  Dropped dropped;
  std::size_t backups = 0;
  std::size_t backupsDeleted = 0;
  FileRead exports;
  FileRead history;
  FileRead alarms;
  FileRead devices;
  /// The file of device names that is written exists, and the one that is read does not.
  bool writtenNamesNotRead = false;
};

/// Where a commit did not take what the form shows.
struct CommitNotes {
  bool firstHistoryStays = false;  ///< its history row keeps other settings than the form
  bool furtherAlarmRow = false;    ///< it already had an alarm watch row
  std::size_t linesBeyond = 0;     ///< lines of the device box without a device
};

/// The last event, then what of the project is not yet on disk now.
std::string statusText(const Wizard& wizard);

/// "2 properties, 1 removal"; empty without any.
std::string listed(const Unwritten& rows);

/// What a change of directory would drop now; empty if nothing is unwritten.
std::string dropWarning(const WizardState& state);

/// Environment values that are not used, before the message on the home directory.
void reportStart(Wizard& wizard, const std::string& notUsed);
/// The directory has changed. Keeps the message if there was nothing to drop.
void reportDropped(Wizard& wizard, const Dropped& dropped);
void reportProjectRead(Wizard& wizard, const ProjectRead& project);
void reportProjectNotRead(Wizard& wizard, std::string_view reason);
/// The project was not read because of a file that could not be backed up or deleted.
void reportNotBackedUp(Wizard& wizard, const BackupFailure& failure);
void reportCommit(Wizard& wizard, const std::string& property, bool isNew,
                  const CommitNotes& notes);
void reportProcessCommit(Wizard& wizard, const std::string& property);
/// `inForm`: the form still shows the complete property.
void reportRemoval(Wizard& wizard, const std::string& property, bool inForm);
/// Remove was pressed without a selected line.
void reportNothingRemoved(Wizard& wizard);
/// A lower number of devices has dropped names.
void reportNamesDropped(Wizard& wizard, std::size_t names, std::int16_t devices);
/// Lines of the device box without a device. Keeps the message if there are none.
void reportLinesBeyond(Wizard& wizard, std::size_t lines);
/// The reader of a property's device names has skipped some.
void reportNamesSkipped(Wizard& wizard, const std::string& file, std::size_t names);
/// No device list could be made, so the box was cleared.
void reportNoList(Wizard& wizard, const std::string& why);
/// The focus entered a field of one kind of alarm, which set the fields of the other kind to 0.
void reportThresholdsCleared(Wizard& wizard);
void reportMaskCleared(Wizard& wizard);
/// The guided dialog has changed the number of devices. Appends to the message.
void reportGuidedDevices(Wizard& wizard, const std::string& former, const std::string& now);
/// The unwritten rows have changed without a message.
void refreshStatus(Wizard& wizard);
/// All tables are on disk.
void reportAllWritten(Wizard& wizard);
/// Done copies nothing because the path of the repository is unusable.
void reportRepositoryNotUsed(Wizard& wizard);
/// Tables changed by someone else, as far as Done has come.
void reportExternalChanges(Wizard& wizard);
/// Precedes the message on reloading the project.
void reportRestored(Wizard& wizard, std::size_t files);
/// On drafts: that some are kept, that one is restored, or that none can be written.
void reportDraft(Wizard& wizard, const std::string& message);
/// Done has failed before its end.
void reportNotFinished(Wizard& wizard);

}  // namespace kova
