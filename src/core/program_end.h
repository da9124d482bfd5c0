// SPDX-License-Identifier: MIT
// The end of the program.
#pragma once

#include "core/wizard.h"

namespace kova {

/// Unloads all windows but `keep`, or but the first loaded one, and ends the process when the
/// running handlers have returned. A nested call does nothing.
void quitApplication(Wizard& wizard, Window* keep = nullptr);

}  // namespace kova
