// SPDX-License-Identifier: MIT
// What all tables go through before they are replaced.
#pragma once

#include <memory>
#include <string_view>

#include "core/wizard.h"

namespace kova {

/// The gate of one Done. From its first table on it keeps other wizards from replacing theirs; one
/// that does the same is waited for once.
class TableGate {
 public:
  explicit TableGate(Wizard& wizard) : wizard_(wizard) {}

  /// Gives a table its whole content. Throws Failure; the table is then as it was.
  void replace(const Path& table, std::string_view content);
  /// Lets what was written take the place of `table`. What somebody else has written there since
  /// the project was entered is backed up ahead of that. Throws Failure as above.
  void letPass(const Path& table, OutputFile& written);

 private:
  void lock();
  void saveForeignChange(const Path& table);

  Wizard& wizard_;
  std::unique_ptr<FolderLock> lock_;
  bool asked_ = false;  ///< for the lock
};

}  // namespace kova
