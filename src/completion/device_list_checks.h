// SPDX-License-Identifier: MIT
// Checks of the files with device names of single properties.
#pragma once

#include <optional>
#include <string>

#include "platform/file_system.h"
#include "tables/project.h"

namespace kova {

/// A names file that can't be written, and why.
struct UnwritableFile {
  std::string name;
  std::string why;
};

/// The first names file that the disk of `folder` can't hold with its backup, or can't distinguish
/// from that of another property. Throws Failure if this can't be checked.
std::optional<UnwritableFile> findUnwritableNamesFile(const FileSystem& files,
                                                      const Project& project, const Path& folder);

}  // namespace kova
