// SPDX-License-Identifier: MIT
// Hands the finished project to the generator programs.
#pragma once

#include "core/wizard.h"

namespace kova {

/// Starts the ticked generators one behind the other. One that can't be started costs a message.
void startGenerators(Wizard& wizard);

}  // namespace kova
