// SPDX-License-Identifier: MIT
// The rules by subject. A rule and its check are next to each other.
#pragma once

#include <span>

#include "review/findings.h"

namespace kova::checks {

/// No column is missing that a table of its kind must have. Rules that compare rows of a table
/// without one would report each row for a fault of the header.
bool hasAllColumns(const TableText& table);

/// Formatting of a file.
std::span<const Rule> fileRules();
/// Where reading stops, columns and fields.
std::span<const Rule> columnRules();
/// Single rows of the export table.
std::span<const Rule> propertyRules();
/// Rows of the other tables and their properties.
std::span<const Rule> crossTableRules();

}  // namespace kova::checks
