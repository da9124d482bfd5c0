// SPDX-License-Identifier: MIT
// Handlers of the main window that have no other home.
#pragma once

#include <cstdint>

#include "core/wizard.h"

namespace kova {

void ServerOption_Click(Wizard& wizard);
void Frame2_MouseDown(Wizard& wizard, std::int16_t button);
void Label9_Click(Wizard& wizard);
void prpGuide_Click(Wizard& wizard);

}  // namespace kova
