// SPDX-License-Identifier: MIT
// Range prefixes: what was built is taken apart again, and any text leaves what stands behind.
#include <string>

#include "editing/range_prefix.h"
#include "harness.h"

namespace kova::fuzz {

void check(std::string_view bytes) {
  const std::string text(bytes);
  const DescriptionParts any = takeApart(text);
  const auto close = text.find(']');
  const bool twoWithin =
      close < text.size() && close > text.find('[') && close - text.find('[') > 2;
  require(any.hasPrefix == twoWithin, "two characters within brackets are a prefix");
  require(text.ends_with(any.rest), "the rest is what stands behind");
  require(any.hasPrefix == (any.rest.size() < text.size()), "only a prefix is taken off");
  require(any.hasPrefix || (!any.minimum && !any.maximum && any.units.empty()),
          "no prefix, no limits");
  const auto third = text.size() / 3;
  const std::string minimum = text.substr(0, third);
  const std::string maximum = text.substr(third, third);
  const std::string units = text.substr(2 * third);
  if (minimum.find_first_of(":]") < third || maximum.find_first_of(" ]") < third) return;
  if (units.find(']') < units.size()) return;
  const DescriptionParts parts = takeApart(rangePrefix(minimum, maximum, units) + text);
  require(parts.minimum == minimum && parts.maximum == maximum, "the limits come back");
  require(parts.units == (units == "none" ? "" : units), "the units come back");
  require(parts.hasPrefix && parts.rest == text, "the text comes back");
}

}  // namespace kova::fuzz
