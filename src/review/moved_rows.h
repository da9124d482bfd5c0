// SPDX-License-Identifier: MIT
// Which rows stand elsewhere than before.
#pragma once

#include <cstddef>
#include <limits>
#include <vector>

namespace kova {

inline constexpr std::size_t noPartner = std::numeric_limits<std::size_t>::max();

/// `partners` holds, for each row, the place that it had before, or noPartner. Those rows have
/// moved that do not belong to the longest part whose order is still the same.
std::vector<bool> findMoved(const std::vector<std::size_t>& partners);

}  // namespace kova
