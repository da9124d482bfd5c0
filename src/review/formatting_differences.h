// SPDX-License-Identifier: MIT
// Differences between two tables apart from their rows.
#pragma once

#include <string>
#include <vector>

#include "review/table_text.h"

namespace kova {

/// Messages about line endings, comments and columns, without a full stop.
std::vector<std::string> formattingDifferences(const TableText& before, const TableText& after);

}  // namespace kova
