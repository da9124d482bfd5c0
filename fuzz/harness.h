// SPDX-License-Identifier: MIT
// What all harnesses share.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string_view>

namespace kova::fuzz {

/// Plays one input. Each harness has its own.
void check(std::string_view bytes);

// Places of the acts of an engineer who makes no mistakes: a new server, a property, Done and the
// project read again, the number of devices, and whatever else there is to do.
inline constexpr std::uint8_t firstGoodAct = 60;
inline constexpr std::uint8_t doneOfGood = firstGoodAct + 2;
inline constexpr std::uint8_t goodActs = 10;

/// Ends the program unless `holds`, so that the bytes that led here are kept.
inline void require(bool holds, const char* rule) {
  if (holds) return;
  std::cerr << "broken rule: " << rule << '\n';
  std::abort();
}

}  // namespace kova::fuzz
