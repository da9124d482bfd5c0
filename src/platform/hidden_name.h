// SPDX-License-Identifier: MIT
// How a file is called while it is being written.
#pragma once

#include <string_view>

namespace kova {

/// Ahead of the number at the end. No other program's files are called like this.
inline constexpr std::string_view hiddenMark = ".kova~";
/// So many writers of one file may be at work at once; the numbers begin at 1.
inline constexpr int hiddenNames = 8;

inline bool isHiddenName(std::string_view name) {
  if (name.size() < hiddenMark.size() + 3 || name.front() != '.') return false;
  const char number = name.back();
  name.remove_suffix(1);
  return name.ends_with(hiddenMark) && number >= '1' && number < '1' + hiddenNames;
}

/// Lets `take` try one number after the other until it gives 0, for a name that is had. Gives 0
/// then, or else the error of the first one.
template <class Take>
auto errorOfTakingOne(Take take) {
  const auto firstError = take(1);
  auto error = firstError;
  for (int number = 2; error != 0 && number <= hiddenNames; ++number) error = take(number);
  return error == 0 ? error : firstError;
}

/// What is told where others hold all of the names.
inline constexpr const char* allNamesHeld = "Too many other programs are writing the file";

}  // namespace kova
