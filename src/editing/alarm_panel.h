// SPDX-License-Identifier: MIT
// The alarm watch panel next to the property form. A value is watched either against thresholds or
// through a mask: when the focus enters a field of one kind, the fields of the other are cleared.
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

/// Shows the settings of the first alarm watch row of this property with this local name. Without
/// one the panel stays unchanged.
void fillInAlarmSelections(Wizard& wizard, const std::string& lclName, const std::string& prpName);

}  // namespace kova
