// SPDX-License-Identifier: MIT
// Minimum, maximum and units of a property are stored at the start of its description.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kova {

/// A property with these limits has a range: one of them is not 0 in single precision. A text that
/// is not a number counts as 0.
bool isRange(std::string_view minimum, std::string_view maximum);

/// The prefix "[minimum:maximum units]" of a description. "none" means no units.
std::string rangePrefix(std::string_view minimum, std::string_view maximum, std::string_view units);

/// The parts of a description. An absent part leaves its field unchanged.
struct DescriptionParts {
  bool hasPrefix = false;
  std::optional<std::string> minimum;  ///< absent if the prefix has no colon
  std::optional<std::string> maximum;  ///< absent if the prefix has no space after the colon
  std::string units;
  std::string rest;
};
DescriptionParts parseDescription(std::string_view description);

}  // namespace kova
