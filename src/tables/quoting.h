// SPDX-License-Identifier: MIT
// How messages quote texts and count things.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kova {

/// The text between quotation marks.
inline std::string quoted(std::string_view text) {
  return '"' + std::string(text) + '"';
}

/// A number and its noun: "1 property", "3 properties".
inline std::string counted(std::size_t number, std::string_view singular, std::string_view plural) {
  return std::to_string(number) + ' ' + std::string(number == 1 ? singular : plural);
}
/// The same for a plural in "s".
inline std::string counted(std::size_t number, const std::string& singular) {
  return counted(number, singular, singular + 's');
}

}  // namespace kova
