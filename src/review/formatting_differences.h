// SPDX-License-Identifier: MIT
// What of a table changes although its rows do not.
#pragma once

#include <string>
#include <vector>

#include "review/table_text.h"

namespace kova {

/// Messages without a full stop: line endings, comments, a byte order mark, columns.
std::vector<std::string> formattingDifferences(const TableText& before, const TableText& after);

}  // namespace kova
