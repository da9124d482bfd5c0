// SPDX-License-Identifier: MIT
// Who may do what with a file, and how a new file gets the same.
#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>
#include <vector>

#include "platform/posix/calls.h"

namespace kova::native {

/// The owner, group, mode and access list of a file.
struct Permissions {
  uid_t owner = 0;
  gid_t group = 0;
  mode_t mode = 0;
  /// As the system keeps it, empty if the file has none; nothing if it can't be read.
  std::optional<std::vector<char>> accessList = std::vector<char>();
};

/// Those of a file whose state is known.
Permissions permissionsOf(const struct stat& state, const std::string& name);
Permissions permissionsOf(const struct stat& state, const Handle& file);

/// Gives them to the next content of the file. The owner stays only where this account may give
/// files away, the group where it belongs to it. Throws Failure if the others can't be kept.
void keepPermissions(const Permissions& permissions, const Handle& file);
/// Gives them to a copy; of those that can't be kept less, so that nobody may read the copy who may
/// not read the original.
void keepPermissionsOrFewer(const Permissions& permissions, const Handle& copy);
/// Sets the mode of a new file, unless the file system has modes of its own.
void setNewMode(const Handle& file, mode_t mode);
/// Gives a file the attributes that users and their programs have put on the former one, unless its
/// file system keeps none. Throws Failure.
void keepUserAttributes(const std::string& former, const Handle& file);
/// Sets times of access and modification, unless the file system keeps its own.
void keepTimes(const struct stat& former, const Handle& file);

}  // namespace kova::native
