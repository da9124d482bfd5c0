// SPDX-License-Identifier: MIT
// The tables in a project directory.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/file_system.h"

namespace kova {

/// Contents of tables by their native file names.
using ProjectFiles = std::map<std::string, std::string, std::less<>>;

/// Sorted names of the folder's plain files, without backups. Throws Failure if it can't be listed.
std::vector<std::string> filesInUse(const FileSystem& files, const Path& folder);

/// The tables of a folder, without backups. Throws Failure if one can't be read.
ProjectFiles projectFiles(const FileSystem& files, const Path& folder);

/// Runs `read`, and adds the file's name to a Failure.
template <class Read>
auto naming(const std::string& file, Read read) {
  try {
    return read();
  } catch (const Failure& failure) {
    throw Failure(file + ": " + failure.what());
  }
}

}  // namespace kova
