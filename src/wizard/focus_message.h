// SPDX-License-Identifier: MIT
// What the status line says while a control has the focus, ahead of what an act there would cost.
#pragma once

#include <string>

#include "controls/control_design.h"
#include "core/wizard.h"

namespace kova {

/// The reason of a field's mark, what a change of Export Name or Project Directory would drop, what
/// Done would write: as things stand at this moment. Empty if there is nothing to say about
/// `control`; statusText then shows.
std::string focusMessage(const Wizard& wizard, const ControlPointer& control);

}  // namespace kova
