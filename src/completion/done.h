// SPDX-License-Identifier: MIT
// The Done button: writes all tables, copies them into the repository, starts the generators.
#pragma once

#include "core/wizard.h"

namespace kova {

void Command1_Click(Wizard& wizard);

}  // namespace kova
