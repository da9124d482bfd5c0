// SPDX-License-Identifier: MIT
// The wizard's state: the one set of variables that every handler reads and writes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "controls/controls.h"
#include "core/project_on_disk.h"
#include "tables/alarm_table.h"
#include "tables/export_table.h"
#include "tables/history_table.h"
#include "tables/row_rules.h"

namespace kova {

/// One sub-property of a process property.
struct ProcessTemplate {
  std::string suffix;             ///< behind the property's name
  std::string descriptionPrefix;  ///< ahead of its description
  std::int16_t inputSize = 0;
  std::int16_t outputSize = 0;
  std::string inputFormat;
  std::string outputFormat;
  std::string access;
};

/// A directory that a row led to and that was not entered.
struct RefusedEntry {
  std::string exportName;  ///< of the row
  std::string directory;   ///< of the project from which the rows led there
  bool tooDeep = false;    ///< too many projects led to it; else it lies outside the home drive
};

/// Lives as long as the main window. What lasts beyond is in the project's tables.
struct WizardState {
  /// The properties; rows 0 to `exportCount` - 1 are live. The one at `exportCount` is the stage,
  /// on which a device list may wait for the commit of its property; all others are empty.
  ExportTable exportTable = roomyTable<ExportTable>();
  std::int16_t exportCount = 0;
  HistoryTable historyTable = roomyTable<HistoryTable>();
  std::int16_t historyCount = 0;
  AlarmTable alarmTable = roomyTable<AlarmTable>();
  std::int16_t alarmCount = 0;
  DeviceNames deviceNames;  ///< of the server as a whole, one a device module

  std::array<std::string, 101> formatNames;  ///< table names by list index, 0 to 34
  std::array<ProcessTemplate, 5> processTemplates;

  std::string projectPath;  ///< project directory in use, without a trailing separator
  std::string exportsFileName;
  std::string homeDrive;  ///< empty if the environment tells none that can be used

  bool projectDirEdited = false;    ///< the export name no longer drives the directory
  bool localNameEdited = false;     ///< the export name no longer drives the local name
  bool historyInUse = false;        ///< the history table is to be written
  bool deviceNamesDefined = false;  ///< the server's device names are to be written
  std::string localNameSuggestion;  ///< the local name that was derived last

  std::vector<TextField*> guideControls;  ///< fields that the guided dialog walks
  std::array<std::string, 3> guidePrompts;

  std::unique_ptr<OutputFile> exportStream;  ///< the export table while it is being written
  bool quitInProgress = false;

  std::vector<std::string> directoriesBeingEntered;  ///< nested project entries, outermost first
  std::optional<RefusedEntry> refusedEntry;          ///< within the last of the outermost ones

  ProjectOnDisk onDisk;
};

}  // namespace kova
