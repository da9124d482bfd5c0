// SPDX-License-Identifier: MIT
// The history panel beside the property form.
#pragma once

#include <string>

#include "core/wizard.h"

namespace kova {

void HistoryCheck_Click(Wizard& wizard);

/// Shows the settings of the first history row of this property; without one the panel stays.
void fillInHistorySelections(Wizard& wizard, const std::string& expName,
                             const std::string& prpName);

}  // namespace kova
