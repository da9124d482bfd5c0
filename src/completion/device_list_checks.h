// SPDX-License-Identifier: MIT
// The files of properties with device names of their own.
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

/// The first names file whose name the disk of `folder` can't hold, or takes for the one of another
/// property. Throws Failure if that can't be found out.
std::optional<UnwritableFile> findUnwritableNamesFile(const FileSystem& files,
                                                      const Project& project, const Path& folder);

}  // namespace kova
