// SPDX-License-Identifier: MIT
// Entering a project directory: its tables are dropped from memory, backed up and read.
#pragma once

#include <string>
#include <string_view>

#include "core/wizard.h"

namespace kova {

/// Text of the project directory itself, "/" included; empty if none is given.
const std::string& projectDirectory(const Wizard& wizard);

/// Drops all rows. If the directory in the field holds an export table, backs its files up and
/// reads its tables. Whatever fails ends it silently but for the status line. While a project is
/// being entered, its rows lead only to directories that lie directly in the home drive.
void ProjectDir_Change(Wizard& wizard);

void ProjectDir_Click(Wizard& wizard);

/// Appends the rows of an export table to the table and the list, and selects the last of them.
/// Shows nothing: the result tells where it stopped.
ReadResult getExistingProject(Wizard& wizard);

}  // namespace kova
