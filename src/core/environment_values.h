// SPDX-License-Identifier: MIT
// The folders that the environment names: where projects lie and where the repository is.
#pragma once

#include <string>

#include "platform/platform.h"

namespace kova {

/// A folder and which values of the environment were passed over on the way to it.
struct NamedFolder {
  std::string text;     ///< empty if there is none
  std::string notUsed;  ///< in messages, each with a blank behind it
};

/// Where projects lie: HOMEDRIVE, else the engineer's home.
NamedFolder homeDrive(const Environment& environment);

/// FEC_HOME, else FECDB. An unusable FEC_HOME names none: the tables would go where the engineer
/// did not send them.
NamedFolder repositoryRoot(const Environment& environment);

}  // namespace kova
