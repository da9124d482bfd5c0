// SPDX-License-Identifier: MIT
// Writing the export table, and what all tables go through before they are replaced.
#pragma once

#include <functional>
#include <string>

#include "core/wizard.h"

namespace kova {

/// Makes sure that the directory shown in ProjectDir exists, starts the file anew and writes the
/// header line. Leaves the open stream in the state, or shows a message and leaves none.
void putHeader(Wizard& wizard, const std::string& fileName);

/// Writes all rows to the open stream and closes it. Throws Failure; the file is then as it was.
void writeExportRows(Wizard& wizard, const std::string& fileName);

/// Runs `writer`, which gives the file its new content. What somebody else has written there since
/// the project was entered is backed up ahead of that. Throws Failure if it can't be saved, and
/// those of `writer`.
void replaceTable(Wizard& wizard, const std::string& fileName, const std::function<void()>& writer);

}  // namespace kova
