// SPDX-License-Identifier: MIT
// Counts the line endings of a text.
#pragma once

#include <cstddef>
#include <string_view>

namespace kova {

struct LineEndings {
  std::size_t both = 0;  ///< CR LF
  std::size_t carriageReturns = 0;
  std::size_t lineFeeds = 0;
};

inline LineEndings countLineEndings(std::string_view content) {
  LineEndings ends;
  for (std::size_t at = content.find_first_of("\r\n"); at != std::string_view::npos;
       at = content.find_first_of("\r\n", at + 1)) {
    if (content[at] == '\n') {
      ++ends.lineFeeds;
    } else if (content.substr(at + 1).starts_with('\n')) {
      ++ends.both;
      ++at;
    } else {
      ++ends.carriageReturns;
    }
  }
  return ends;
}

}  // namespace kova
