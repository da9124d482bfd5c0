// SPDX-License-Identifier: MIT
// The tables that lie in a project directory.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/file_system.h"

namespace kova {

/// Contents of tables by the names of their files, in the machine's own form.
using ProjectFiles = std::map<std::string, std::string, std::less<>>;

/// Names of the folder's plain files that are no backups, sorted. Throws Failure if it can't be
/// listed.
std::vector<std::string> filesInUse(const FileSystem& files, const Path& folder);

/// The tables of a folder, backups left out. Throws Failure if one can't be read.
ProjectFiles projectFiles(const FileSystem& files, const Path& folder);

/// Runs `read`. A Failure within names the file.
template <class Read>
auto naming(const std::string& file, Read read) {
  try {
    return read();
  } catch (const Failure& failure) {
    throw Failure(file + ": " + failure.what());
  }
}

}  // namespace kova
