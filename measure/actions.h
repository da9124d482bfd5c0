// SPDX-License-Identifier: MIT
// The language of the programs that drive the wizard from outside.
#pragma once

#include <string>

#include "support/engineer.h"

namespace kova::measure {

/// One act as a line of words; actions.cpp lists the verbs. Returns what is wrong with it, empty if
/// nothing is.
std::string carryOut(test::Engineer& engineer, const std::string& line);

}  // namespace kova::measure
