// SPDX-License-Identifier: MIT
// The texts of the form that make rows of the history and the alarm watch table.
#pragma once

#include <string_view>

#include "core/wizard.h"
#include "tables/value_failure.h"

namespace kova {

HistoryForm historyForm(const Wizard& wizard);
AlarmForm alarmForm(const Wizard& wizard);

/// Caption of the label that stands beside the field of a value.
std::string_view labelOf(const Wizard& wizard, FormValue value);

/// The field of a value, or null if no text makes it.
const TextField* fieldOf(const Wizard& wizard, FormValue value);

}  // namespace kova
