// SPDX-License-Identifier: MIT
// What all tables go through before they are replaced.
#pragma once

#include <functional>

#include "core/wizard.h"

namespace kova {

/// Runs `writer`, which gives the file its new content. What somebody else has written there since
/// the project was entered is backed up ahead of that. Throws Failure if it can't be saved, and
/// those of `writer`.
void replaceTable(Wizard& wizard, const Path& file, const std::function<void()>& writer);

}  // namespace kova
