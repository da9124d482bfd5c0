// SPDX-License-Identifier: MIT
// The folders that the environment names: the home of the projects, and the repository.
#pragma once

#include <string>

#include "platform/platform.h"

namespace kova {

/// A folder, and the unusable environment values that were skipped to find it.
struct NamedFolder {
  std::string text;     ///< empty if there is none
  std::string notUsed;  ///< messages, each with a trailing space
};

/// The directory that contains the projects: HOMEDRIVE, else the engineer's home directory.
NamedFolder homeDrive(const Environment& environment);

/// FEC_HOME, else FECDB. If FEC_HOME is set but unusable there is no repository: FECDB is not where
/// the engineer wanted the tables.
NamedFolder repositoryRoot(const Environment& environment);

}  // namespace kova
