// SPDX-License-Identifier: MIT
// Minimum, maximum and units of a property travel at the head of its description.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kova {

/// A property with these limits has a range: not both are 0 in single precision. A text that is no
/// number counts as 0.
bool isRange(std::string_view minimum, std::string_view maximum);

/// The head "[minimum:maximum units]" of a description. "none" stands for no units.
std::string rangePrefix(std::string_view minimum, std::string_view maximum, std::string_view units);

/// A description taken apart. What is absent leaves its field as it is.
struct DescriptionParts {
  bool hasPrefix = false;
  std::optional<std::string> minimum;  ///< absent where the prefix has no colon
  std::optional<std::string> maximum;  ///< absent where it has no blank behind the colon
  std::string units;
  std::string rest;
};
DescriptionParts parseDescription(std::string_view description);

}  // namespace kova
