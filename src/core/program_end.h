// SPDX-License-Identifier: MIT
// How the program ends itself.
#pragma once

#include "core/wizard.h"

namespace kova {

/// Takes all windows but one out of the program and ends the process once the running handlers are
/// through. `keep` survives, or without one the first loaded window. A second call while one is
/// running does nothing.
void quitApplication(Wizard& wizard, Window* keep = nullptr);

}  // namespace kova
