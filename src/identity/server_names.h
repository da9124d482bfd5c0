// SPDX-License-Identifier: MIT
// The names of the server: what follows from the export name as it is typed.
#pragma once

#include <string_view>

#include "core/wizard.h"

namespace kova {

/// What a suggested local name ends in.
inline constexpr std::string_view localNameEnding = "EQM";

void ExportName_Change(Wizard& wizard);
void LocalName_Change(Wizard& wizard);
void LocalName_Click(Wizard& wizard);

}  // namespace kova
