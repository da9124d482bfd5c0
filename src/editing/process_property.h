// SPDX-License-Identifier: MIT
// A process property: one name and a number of steps become five rows.
#pragma once

#include "core/wizard.h"

namespace kova {

void ProcessCheck_Click(Wizard& wizard);
void NumStepsText_Change(Wizard& wizard);

/// Commits the form as a process property; its names have been checked. `isNew`: no row has its
/// base name. Throws ValueFailure, before anything has changed, if the number of steps has no
/// decimal text.
void commitProcessProperty(Wizard& wizard, bool isNew);

}  // namespace kova
