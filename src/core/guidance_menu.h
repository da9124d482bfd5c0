// SPDX-License-Identifier: MIT
// The menu that offers guidance. What its entry for the server opens is a window of its own.
#pragma once

#include <cstdint>

#include "core/wizard.h"

namespace kova {

/// The right button opens the menu over the frame of the server.
void Frame2_MouseDown(Wizard& wizard, std::int16_t button);
void prpGuide_Click(Wizard& wizard);

}  // namespace kova
