// SPDX-License-Identifier: MIT
// Keeps the property form consistent while it is filled in.
#pragma once

#include "core/wizard.h"

namespace kova {

void PropertyName_Change(Wizard& wizard);
void PropertyName_Click(Wizard& wizard);
void InputDataFormat_Click(Wizard& wizard);
void OutputDataSize_Change(Wizard& wizard);
/// A click on the label of the maximum puts the focus into its field.
void Label9_Click(Wizard& wizard);

}  // namespace kova
