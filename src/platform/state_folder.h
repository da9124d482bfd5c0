// SPDX-License-Identifier: MIT
// The folder in which the program keeps files of its own between its runs. Only this account may
// read it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file_system.h"
#include "platform/handle.h"

namespace kova {

/// The folder that contains the state folders of all programs: $XDG_STATE_HOME, by default
/// ~/.local/state; on Windows %LOCALAPPDATA%. Empty if the account has none.
Path stateHome();

/// 16 random hexadecimal digits, to name files of this process.
std::string randomName();
/// The text could be such a name.
bool isRandomName(std::string_view text);

/// A state folder that is open to nobody else.
class StateFolder {
 public:
  /// Makes `kova-setup-wizard` in `home` and what is missing above it. Throws Failure if there is
  /// a link or a file in its place or if it belongs to another account.
  explicit StateFolder(const Path& home);

  /// There is such a folder in `home`, or something in its place.
  static bool exists(const Path& home);

  /// Names of the entries, sorted, without hidden ones.
  std::vector<std::string> names() const;
  /// State of a plain file of this account; nothing if there is none. Links are not followed.
  std::optional<FileState> state(std::string_view name) const;
  /// Content of such a file. Throws Failure, also if the file is larger than 64 MiB.
  std::string read(std::string_view name) const;
  /// Replaces a file atomically, without waiting for the disk: a loss of power may leave the file
  /// empty. Throws Failure and leaves the file unchanged.
  void replace(std::string_view name, std::string_view content);
  /// Renames a file; one that has the new name is replaced. Throws Failure.
  void rename(std::string_view from, std::string_view to);
  /// Removes a file; does nothing if that is not possible.
  void remove(std::string_view name);

  /// Makes a file that `isHeld` as long as this process has the handle. Throws Failure.
  Handle hold(std::string_view name);
  /// A process holds the file.
  bool isHeld(std::string_view name) const;

 private:
  Path folder_;
};

}  // namespace kova
