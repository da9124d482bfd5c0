// SPDX-License-Identifier: MIT
// Pairs the rows of two versions of a table and finds those that have moved.
#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <vector>

namespace kova {

inline constexpr std::size_t noPartner = std::numeric_limits<std::size_t>::max();

struct RowPairs {
  std::vector<std::size_t> partners;  ///< for each row after: its index before, or noPartner
  /// For each row after: it is not in the longest sequence that has kept its order.
  std::vector<bool> moved;
  std::vector<bool> kept;  ///< for each row before: it is still there
};

/// Pairs rows by key, and rows with equal keys by their order.
RowPairs pairRows(const std::vector<std::string>& before, const std::vector<std::string>& after);

}  // namespace kova
