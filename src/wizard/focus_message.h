// SPDX-License-Identifier: MIT
// The status text while a control has the focus: what using that control would cause.
#pragma once

#include <string>

#include "controls/control_design.h"
#include "core/wizard.h"

namespace kova {

/// For a field the reason of its mark, for Export Name and Project Directory what a change would
/// drop, for Done what it would write. Empty if `control` has no message; then `statusText` shows.
std::string focusMessage(const Wizard& wizard, const ControlPointer& control);

}  // namespace kova
