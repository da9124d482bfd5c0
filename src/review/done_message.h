// SPDX-License-Identifier: MIT
// What Done would write, for the status line.
#pragma once

#include <string>

#include "review/preview.h"

namespace kova {

/// The files in the order in which Done would write them, with their numbers of rows, and the
/// message with which it would fail. A fault of the disk shows only at Done.
std::string doneMessage(const Wizard& wizard, const Preview& done);

/// "one for STATE, the property in the form": the row that Done adds to the history by itself.
std::string formRowText(const Wizard& wizard);

}  // namespace kova
