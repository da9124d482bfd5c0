// SPDX-License-Identifier: MIT
// The one way in which something that can't be done travels.
#pragma once

#include <stdexcept>

namespace kova {

/// Something could not be done; `what()` says why, in words that an engineer can read.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace kova
