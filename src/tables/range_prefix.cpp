// SPDX-License-Identifier: MIT
#include "tables/range_prefix.h"

#include <cmath>

#include "tables/number_text.h"

namespace kova {
namespace {

constexpr std::string_view noUnits = "none";

/// The value is 0 when rounded to single precision.
bool isZeroSingle(double value) {
  return std::fabs(value) <= 0x1p-150;
}

}  // namespace

bool isRange(std::string_view minimum, std::string_view maximum) {
  return !isZeroSingle(textValue(minimum)) || !isZeroSingle(textValue(maximum));
}

std::string rangePrefix(std::string_view minimum, std::string_view maximum,
                        std::string_view units) {
  std::string prefix = "[";
  prefix.append(minimum).append(":").append(maximum).append(" ");
  if (units != noUnits) prefix.append(units);
  return prefix + "]";
}

DescriptionParts parseDescription(std::string_view description) {
  DescriptionParts parts;
  const auto open = description.find('[');
  const auto close = description.find(']');
  // A prefix has at least two characters between the brackets.
  if (open == std::string_view::npos || close == std::string_view::npos || close <= open + 2) {
    parts.rest = description;
    return parts;
  }
  parts.hasPrefix = true;
  // The length counts from the start of the description. With text before the bracket this includes
  // text after the closing one; old tables have always been read like that.
  std::string_view inner = description.substr(open + 1, close - 1);
  if (const auto colon = inner.find(':'); colon != std::string_view::npos) {
    parts.minimum = inner.substr(0, colon);
    inner.remove_prefix(colon + 1);
  }
  if (const auto blank = inner.find(' '); blank != std::string_view::npos) {
    parts.maximum = inner.substr(0, blank);
    parts.units = inner.substr(blank + 1);
  } else {
    parts.units = noUnits;
  }
  parts.rest = description.substr(close + 1);
  return parts;
}

}  // namespace kova
