// SPDX-License-Identifier: MIT
// Writing the export table.
#pragma once

#include <string>

#include "completion/table_gate.h"
#include "core/wizard.h"

namespace kova {

/// Makes sure that the directory shown in ProjectDir exists, starts the file anew and writes the
/// header line. Leaves the open stream in the state, or shows a message and leaves none.
void putHeader(Wizard& wizard, const std::string& fileName);

/// Writes all rows to the open stream and lets it take the file's place. Throws Failure; the file
/// is then as it was.
void writeExportRows(Wizard& wizard, TableGate& gate, const Path& file);

}  // namespace kova
