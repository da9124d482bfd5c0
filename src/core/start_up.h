// SPDX-License-Identifier: MIT
// The start of the wizard.
#pragma once

#include "core/wizard.h"

namespace kova {

/// Runs once, with all handlers connected: lists, home directory, defaults.
void Form_Load(Wizard& wizard);

}  // namespace kova
