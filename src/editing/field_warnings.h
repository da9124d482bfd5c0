// SPDX-License-Identifier: MIT
// What a commit, Done or the next reading would make of a text, told while the engineer still
// types. It blocks nothing.
#pragma once

#include <string>

#include "core/wizard.h"

namespace kova {

/// One sentence on what will happen to the text of `field` as the form stands, the gravest if there
/// are several; empty if the text comes through as it is.
std::string fieldWarning(const Wizard& wizard, const TextField& field);

}  // namespace kova
