// SPDX-License-Identifier: MIT
// How looks read and cite fields.
#pragma once

#include <string>
#include <string_view>

namespace kova::looks {

std::string quoted(std::string_view text);
/// The letters A to Z in their lower case.
std::string lowerCase(std::string_view text);
/// The text is one number as a whole.
bool isNumber(std::string_view text);

}  // namespace kova::looks
