// SPDX-License-Identifier: MIT
// What of the box of device names would be lost.
#pragma once

#include <string>

#include "core/wizard.h"

namespace kova {

/// One message on the names that stand in the box, empty if all of them come through.
std::string nameListWarning(const Wizard& wizard);

}  // namespace kova
