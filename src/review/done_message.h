// SPDX-License-Identifier: MIT
// What Done would write, told ahead of it.
#pragma once

#include <string>

#include "core/wizard.h"

namespace kova {

/// The files in the order in which Done would write them, with what makes up their rows, and the
/// message with which it would end ahead of its time. Touches nothing on disk; whether it takes the
/// files shows at Done only.
std::string doneMessage(const Wizard& wizard);

/// "one for STATE, which stands in the form": the row that Done adds to the history by itself.
std::string formRowText(const Wizard& wizard);

}  // namespace kova
