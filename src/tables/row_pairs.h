// SPDX-License-Identifier: MIT
// Which rows of two states of a table are the same row, and which of them stand elsewhere.
#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <vector>

namespace kova {

inline constexpr std::size_t noPartner = std::numeric_limits<std::size_t>::max();

struct RowPairs {
  std::vector<std::size_t> partners;  ///< of each row after: its place before, or noPartner
  /// Of each row after: it does not belong to the longest part whose order is still the same.
  std::vector<bool> moved;
  std::vector<bool> kept;  ///< of each row before: it is still there
};

/// Pairs rows by what they are known by, and by their place among those that are known by the same.
RowPairs pairRows(const std::vector<std::string>& before, const std::vector<std::string>& after);

}  // namespace kova
