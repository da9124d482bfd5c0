// SPDX-License-Identifier: MIT
// Process properties: one name and a number of steps become five rows.
#pragma once

#include "core/wizard.h"

namespace kova {

void ProcessCheck_Click(Wizard& wizard);
void NumStepsText_Change(Wizard& wizard);

}  // namespace kova
