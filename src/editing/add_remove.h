// SPDX-License-Identifier: MIT
// The buttons beside the property list.
#pragma once

#include <string>

#include "core/wizard.h"

namespace kova {

/// The whole property in the form as Add shows it for confirmation, lines ended by CR LF.
std::string confirmationText(const Wizard& wizard);

void AddProperty_Click(Wizard& wizard);
void EditCmd_Click(Wizard& wizard);
void RemoveProperty_Click(Wizard& wizard);
void PropertyList_DblClick(Wizard& wizard);

}  // namespace kova
