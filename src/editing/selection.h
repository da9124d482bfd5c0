// SPDX-License-Identifier: MIT
// From the table to the form: what selecting a line shows.
#pragma once

#include "core/wizard.h"

namespace kova {

/// Loads the row of the selected line into the form. A step that fails selects "READ" in the access
/// list and the filling goes on.
void fillPropertySelections(Wizard& wizard);

void PropertyList_Click(Wizard& wizard);

}  // namespace kova
