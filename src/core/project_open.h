// SPDX-License-Identifier: MIT
// Opening a project directory: drop the tables in memory, back up the files, read the tables.
#pragma once

#include <string>
#include <string_view>

#include "core/wizard.h"

namespace kova {

/// Path of the project directory as text, also for "/"; empty if none is given.
const std::string& projectDirectory(const Wizard& wizard);

/// Drops all rows. If the directory in the field has an export table, backs up its files and reads
/// its tables. Failures are reported on the status line only. While a project is being opened, its
/// rows may only open directories directly in the home drive.
void ProjectDir_Change(Wizard& wizard);

/// Backs up the files in the directory of a project that comes from elsewhere than its tables, and
/// reads what the tables hold. Throws Failure if a file can't be backed up.
ProjectOnDisk readOnDisk(Wizard& wizard, const Project& project, std::string_view localName,
                         std::string_view numDevices);

void ProjectDir_Click(Wizard& wizard);

/// Appends the rows of the export table to the table and the list, and selects the last one. The
/// result reports where the reading stopped.
ReadResult getExistingProject(Wizard& wizard);

}  // namespace kova
