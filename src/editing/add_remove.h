// SPDX-License-Identifier: MIT
// The buttons next to the property list.
#pragma once

#include "core/wizard.h"

namespace kova {

void AddProperty_Click(Wizard& wizard);
void EditCmd_Click(Wizard& wizard);
void RemoveProperty_Click(Wizard& wizard);
void PropertyList_DblClick(Wizard& wizard);

}  // namespace kova
