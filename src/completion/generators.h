// SPDX-License-Identifier: MIT
// Starts the generator programs for the finished project.
#pragma once

#include "core/wizard.h"

namespace kova {

/// Starts the ticked generators in turn. Shows a message for each that can't be started.
void startGenerators(Wizard& wizard);

}  // namespace kova
