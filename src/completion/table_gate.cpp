// SPDX-License-Identifier: MIT
#include "completion/table_gate.h"

#include <limits>
#include <string>
#include <utility>

#include "core/project_entry.h"
#include "core/status.h"

namespace kova {
namespace {

constexpr int looks = 8;

/// Copies the table beside itself, and gives the name of the copy. No other copy is replaced: it
/// may hold what another wizard has saved in the same second.
std::string copyAside(FileSystem& files, const Path& table, std::int32_t now) {
  for (std::int32_t stamp = now; stamp < std::numeric_limits<std::int32_t>::max(); ++stamp) {
    std::string name = backupName(table.leaf(), stamp);
    if (files.copyAside(table, table.parent() / name)) return name;
  }
  throw Failure("No name is free for a backup");
}

}  // namespace

void TableGate::replace(const Path& table, std::string_view content) {
  const auto output = wizard_.platform.files.createLate(table);
  output->write(content);
  letPass(table, *output);
}

void TableGate::letPass(const Path& table, OutputFile& written) {
  // Another wizard does not wait for a slow disk: between the look at the table and its replacement
  // nothing is left to be flushed.
  written.flush();
  lock();
  saveForeignChange(table);
  written.close();
  if (const auto stamp = wizard_.platform.files.stamp(table)) {
    wizard_.state.onDisk.stamps.insert_or_assign(table.leaf(), *stamp);
  }
}

void TableGate::lock() {
  if (std::exchange(asked_, true)) return;
  FileSystem& files = wizard_.platform.files;
  lock_ = files.lock(files.path(projectFile(wizard_, "")));
  wizard_.state.onDisk.notWaitedFor = lock_ == nullptr;
  if (!lock_) reportForeignChanges(wizard_);
}

void TableGate::saveForeignChange(const Path& table) {
  FileSystem& files = wizard_.platform.files;
  ProjectOnDisk& disk = wizard_.state.onDisk;
  const std::string leaf = table.leaf();
  // A wizard that has not waited for the lock may write while the copy is made: looked at again.
  for (int look = 0; look < looks; ++look) {
    const auto present = files.stamp(table);
    if (!present) return;
    const auto known = disk.stamps.find(leaf);
    if (known != disk.stamps.end() && known->second == *present) return;
    const std::string backup = copyAside(files, table, wizard_.platform.clock.unixTime());
    disk.stamps.insert_or_assign(leaf, *present);
    disk.foreignChanges.push_back({leaf, backup});
    reportForeignChanges(wizard_);
  }
  throw Failure("Somebody else keeps writing the table");
}

}  // namespace kova
