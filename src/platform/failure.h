// SPDX-License-Identifier: MIT
// The exception of the program.
#pragma once

#include <stdexcept>

namespace kova {

/// Something could not be done; `what()` is the reason, written for an engineer.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace kova
