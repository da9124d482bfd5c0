// SPDX-License-Identifier: MIT
// Warnings about device names that would be lost.
#pragma once

#include <string>

#include "core/wizard.h"

namespace kova {

/// One warning about the names in the box; empty if all of them survive.
std::string nameListWarning(const Wizard& wizard);

}  // namespace kova
