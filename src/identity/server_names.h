// SPDX-License-Identifier: MIT
// The names of the server: the local name and the directory follow the export name.
#pragma once

#include <string_view>

#include "core/wizard.h"

namespace kova {

/// Ending of a suggested local name.
inline constexpr std::string_view localNameEnding = "EQM";

void ExportName_Change(Wizard& wizard);
void LocalName_Change(Wizard& wizard);
void LocalName_Click(Wizard& wizard);

}  // namespace kova
