// SPDX-License-Identifier: MIT
// Selection: shows the row of the selected line in the form.
#pragma once

#include "core/wizard.h"

namespace kova {

/// Loads the row of the selected line into the form. A step that fails selects "READ" in the access
/// list; the next steps still run.
void fillPropertySelections(Wizard& wizard);

void PropertyList_Click(Wizard& wizard);

}  // namespace kova
