// SPDX-License-Identifier: MIT
// The alarm watch panel beside the property form. A value is watched against thresholds or through
// a mask: the focus entering a field of one way clears the other.
#pragma once

#include <string>

#include "core/wizard.h"

namespace kova {

void AlarmWatchCheck_Click(Wizard& wizard);

void almHiText_GotFocus(Wizard& wizard);
void almHiWarnText_GotFocus(Wizard& wizard);
void almLoText_GotFocus(Wizard& wizard);
void almLoWarnText_GotFocus(Wizard& wizard);
void almMaskText_GotFocus(Wizard& wizard);
void almNormalText_GotFocus(Wizard& wizard);

/// Shows the settings of the first alarm watch row of this property under this local name; without
/// one the panel stays.
void fillInAlarmSelections(Wizard& wizard, const std::string& lclName, const std::string& prpName);

}  // namespace kova
