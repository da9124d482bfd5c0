// SPDX-License-Identifier: MIT
// An engineer who enters projects.
#pragma once

#include "support/flow.h"

namespace kova::test {

struct Entry : Flow {
  /// The message of an entry that another one has gone ahead of.
  std::string entered(const std::string& folder) {
    form.ProjectDir.click();
    type(form.ProjectDir, home.path());
    type(form.ProjectDir, home.path(folder));
    return status();
  }
};

}  // namespace kova::test
