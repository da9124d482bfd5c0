// SPDX-License-Identifier: MIT
// From the form to the table: the one operation that makes or replaces a property.
#pragma once

#include "core/wizard.h"

namespace kova {

/// Checks the names and commits the form. `appendOnly`: only a new property is accepted; else an
/// existing one is replaced. A commit that is turned away shows one message, puts the focus into
/// the field that it names, and changes nothing.
void updatePropertyList(Wizard& wizard, bool appendOnly);

/// Edit would give `row` other texts or ticks than it has. The settings of its history and alarm
/// watch are no part of it.
bool formDiffersFrom(const Wizard& wizard, const PropertyRecord& row);

}  // namespace kova
