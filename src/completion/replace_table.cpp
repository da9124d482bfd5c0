// SPDX-License-Identifier: MIT
#include "completion/replace_table.h"

#include <string>

#include "core/status.h"

namespace kova {
namespace {

void saveForeignChange(Wizard& wizard, const Path& file) {
  FileSystem& files = wizard.platform.files;
  const auto present = files.stamp(file);
  if (!present) return;
  const std::string leaf = file.leaf();
  const auto known = wizard.state.stampsAtEntry.find(leaf);
  if (known != wizard.state.stampsAtEntry.end() && known->second == *present) return;
  const std::string backup = backupName(leaf, wizard.platform.clock.unixTime());
  files.copy(file, file.parent() / backup);
  std::string& kept = wizard.state.foreignChanges;
  kept += " What somebody else has written to " + leaf + " since is kept as " + backup + ".";
  report(wizard, kept);
}

void noteOwnWriting(Wizard& wizard, const Path& file) {
  if (const auto stamp = wizard.platform.files.stamp(file)) {
    wizard.state.stampsAtEntry.insert_or_assign(file.leaf(), *stamp);
  }
}

}  // namespace

void replaceTable(Wizard& wizard, const Path& file, const std::function<void()>& writer) {
  FileSystem& files = wizard.platform.files;
  // A colleague's Done must not come between the look at the file and its replacement.
  const auto lock = files.lock(files.path(wizard.state.projectPath));
  saveForeignChange(wizard, file);
  writer();
  noteOwnWriting(wizard, file);
}

}  // namespace kova
