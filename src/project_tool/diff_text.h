// SPDX-License-Identifier: MIT
// Prints differences as lines: a sign, the file or row, and the change.
#pragma once

#include "project_tool/tool.h"
#include "review/differences.h"

namespace kova {

void printDifference(const Tool& tool, const FileDifference& file);

}  // namespace kova
