// SPDX-License-Identifier: MIT
// The status line: what just happened and what is not yet on disk. All its sentences are here.
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

/// What entering a project has brought.
struct ProjectRead {
  std::size_t dropped = 0;       ///< rows of the former directory
  std::size_t droppedAgain = 0;  ///< rows read here and dropped since a row names another server
  std::size_t backups = 0;
  std::size_t backupsDeleted = 0;
  FileRead exports;
  FileRead history;
  FileRead alarms;
  FileRead devices;
};

/// What just happened, and behind it what of the project is not yet on disk at this moment.
std::string statusText(const Wizard& wizard);

/// What a change of directory would drop at this moment; empty if nothing is unwritten.
std::string dropWarning(const WizardState& state);

/// Ahead of what entering the home has brought, values of the environment that are not used.
void reportStart(Wizard& wizard, const std::string& notUsed);
/// `rows` of the former directory are gone. Leaves the line as it is if there were none.
void reportDropped(Wizard& wizard, std::size_t rows);
void reportProjectRead(Wizard& wizard, const ProjectRead& project);
void reportProjectNotRead(Wizard& wizard, std::string_view reason);
/// A file in the directory kept the project from being read.
void reportNotBackedUp(Wizard& wizard, const BackupFailure& failure);
void reportCommit(Wizard& wizard, const std::string& property, bool isNew);
void reportProcessCommit(Wizard& wizard, const std::string& property);
void reportRemoval(Wizard& wizard, const std::string& property);
/// Done copies nothing, since what names the repository is not used.
void reportRepositoryNotUsed(Wizard& wizard, const std::string& notUsed);
/// Tables that somebody else has written, as far as Done has come.
void reportForeignChanges(Wizard& wizard);
/// Done has ended ahead of its time.
void reportNotFinished(Wizard& wizard);

}  // namespace kova
