// SPDX-License-Identifier: MIT
// Names of temporary files, which hold new content until it is complete.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kova {

/// Precedes the digits at the end. No other program uses such names.
inline constexpr std::string_view hiddenMark = ".kova~";
/// Hexadecimal digits at the end of a temporary name. They are random, so that nobody can create a
/// file with the next name.
inline constexpr std::size_t randomDigits = 16;
inline constexpr std::string_view hexadecimals = "0123456789abcdef";
/// Number of names to try before giving up.
inline constexpr int temporaryNames = 8;
inline constexpr const char* noTemporaryName = "No name is free for a temporary file";

/// Characters of the target's name for which a temporary name has room.
constexpr std::size_t roomInTemporaryName(std::size_t longestName) {
  return longestName - 1 - hiddenMark.size() - randomDigits;
}

inline std::string hexadecimalText(std::uint64_t random) {
  std::string text;
  for (std::size_t digit = 0; digit < randomDigits; ++digit, random >>= 4U) {
    text += hexadecimals[random & 15U];
  }
  return text;
}

/// The temporary name for a target whose name begins with `beginning`.
inline std::string temporaryName(std::string_view beginning, std::uint64_t random) {
  return ("." + std::string(beginning)).append(hiddenMark) + hexadecimalText(random);
}

/// A temporary name, also one of earlier versions, with one digit from 1 to 8.
inline bool isHiddenName(std::string_view name) {
  const auto mark = name.rfind(hiddenMark);
  if (mark == std::string_view::npos || mark < 2 || name.front() != '.') return false;
  const auto digits = name.substr(mark + hiddenMark.size());
  if (digits.size() == 1) return digits >= "1" && digits <= "8";
  return digits.size() == randomDigits && digits.find_first_not_of(hexadecimals) == digits.npos;
}

}  // namespace kova
