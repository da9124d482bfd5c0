// SPDX-License-Identifier: MIT
// The history panel next to the property form.
#pragma once

#include <string>

#include "core/wizard.h"

namespace kova {

void HistoryCheck_Click(Wizard& wizard);

/// Shows the first history row of this property. Without one the panel stays unchanged.
void fillInHistorySelections(Wizard& wizard, const std::string& expName,
                             const std::string& prpName);

}  // namespace kova
