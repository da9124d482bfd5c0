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
  ProjectOnDisk& disk = wizard.state.onDisk;
  const auto known = disk.stamps.find(leaf);
  if (known != disk.stamps.end() && known->second == *present) return;
  const std::string backup = backupName(leaf, wizard.platform.clock.unixTime());
  files.copy(file, file.parent() / backup);
  disk.foreignChanges.push_back({leaf, backup});
  reportForeignChanges(wizard);
}

void noteOwnWriting(Wizard& wizard, const Path& file) {
  if (const auto stamp = wizard.platform.files.stamp(file)) {
    wizard.state.onDisk.stamps.insert_or_assign(file.leaf(), *stamp);
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
