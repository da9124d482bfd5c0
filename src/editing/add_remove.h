// SPDX-License-Identifier: MIT
// The buttons next to the property list.
#pragma once

#include "core/wizard.h"

namespace kova {

void AddProperty_Click(Wizard& wizard);
void EditCmd_Click(Wizard& wizard);
void RemoveProperty_Click(Wizard& wizard);
/// Removes the line and the row of a property, and the pending row.
void removeProperty(Wizard& wizard, std::int32_t index);
void PropertyList_DblClick(Wizard& wizard);

}  // namespace kova
