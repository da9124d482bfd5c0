// SPDX-License-Identifier: MIT
// What Done would write, found out by letting it write into files that only remember.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "core/wizard.h"
#include "review/overlay_files.h"

namespace kova {

/// The files of a Done that has not taken place.
struct Preview {
  /// What each file would hold, by its path: tables, and copies of what somebody else has written
  /// to them. Copies in the repository are not among them: they are the same tables again.
  std::map<Path, std::string> files;
  std::vector<Path> tables;     ///< those of them that are no copies, in the order of their writing
  bool addsHistoryRow = false;  ///< for the property that stands in the form
  std::string folder;           ///< the project directory as wizard text
  /// The message with which Done would end ahead of its time; what it would have written until then
  /// is in `files`. Empty if it would come to its end.
  std::string failure;
};

/// Asks nothing, starts nothing, and changes neither the wizard nor the disk. Without a property
/// Done writes nothing.
Preview preview(const Wizard& wizard);
/// The same, written into `files`, which begin as those of the wizard.
Preview preview(const Wizard& wizard, OverlayFiles& files);

}  // namespace kova
