// SPDX-License-Identifier: MIT
// Differences as lines: a sign, what it is about, and what has become of it.
#pragma once

#include "project_tool/tool.h"
#include "review/differences.h"

namespace kova {

void printDifference(const Tool& tool, const FileDifference& file);

}  // namespace kova
