// SPDX-License-Identifier: MIT
// What a commit would refuse or cut, told while the engineer still types. It blocks nothing.
#pragma once

#include <string>

#include "core/wizard.h"

namespace kova {

/// One sentence on what is wrong with the text of `field` at this moment, empty if nothing is.
std::string fieldWarning(const Wizard& wizard, const TextField& field);

}  // namespace kova
