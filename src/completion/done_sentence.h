// SPDX-License-Identifier: MIT
// What Done would write, told ahead of it.
#pragma once

#include <string>

#include "core/wizard.h"

namespace kova {

/// The files in their order with what makes up their rows, as the writers would write them now, and
/// the first one that can't be written. Touches nothing on disk; whether it takes the files shows
/// at Done only.
std::string doneSentence(const Wizard& wizard);

}  // namespace kova
