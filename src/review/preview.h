// SPDX-License-Identifier: MIT
// What Done would write: runs it on an overlay that keeps the files in memory.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "core/wizard.h"
#include "review/overlay_files.h"

namespace kova {

/// The files that Done would write now.
struct Preview {
  /// Contents by path: tables, and backups of tables that someone else has changed. Copies in the
  /// repository are left out, as they equal the tables.
  std::map<Path, std::string> files;
  std::vector<Path> tables;     ///< without the backups, in the order of writing
  bool addsHistoryRow = false;  ///< for the property in the form
  std::string folder;           ///< the project directory as wizard text
  /// The message of a failure that would stop Done; `files` has what it would write before. Empty
  /// if Done would succeed.
  std::string failure;
};

/// Asks nothing, starts nothing, and changes neither the wizard nor the disk. Empty if there is no
/// property.
Preview preview(const Wizard& wizard);
/// The same, written into `files`, a new overlay over those of the wizard.
Preview preview(const Wizard& wizard, OverlayFiles& files);

}  // namespace kova
