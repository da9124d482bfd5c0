// SPDX-License-Identifier: MIT
// What all harnesses share.
#pragma once

#include <cstdlib>
#include <iostream>
#include <string_view>

namespace kova::fuzz {

/// Plays one input. Each harness has its own.
void check(std::string_view bytes);

/// Ends the program unless `holds`, so that the bytes that led here are kept.
inline void require(bool holds, const char* rule) {
  if (holds) return;
  std::cerr << "broken rule: " << rule << '\n';
  std::abort();
}

}  // namespace kova::fuzz
