// SPDX-License-Identifier: MIT
// How the wizard comes up.
#pragma once

#include "core/wizard.h"

namespace kova {

/// Runs once, with all handlers attached: lists, home directory, defaults.
void Form_Load(Wizard& wizard);

}  // namespace kova
