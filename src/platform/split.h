// SPDX-License-Identifier: MIT
// Splitting a text.
#pragma once

#include <algorithm>
#include <string_view>
#include <vector>

namespace kova {

/// The parts between the separators; empty parts are skipped.
inline std::vector<std::string_view> split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  while (!text.empty()) {
    const auto end = std::min(text.find(separator), text.size());
    if (end > 0) parts.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return parts;
}

}  // namespace kova
