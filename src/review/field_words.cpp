// SPDX-License-Identifier: MIT
#include "review/field_words.h"

#include <algorithm>

#include "platform/failure.h"
#include "tables/number_text.h"

namespace kova::looks {
std::string quoted(std::string_view text) {
  return '"' + std::string(text) + '"';
}

std::string lowerCase(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  return lower;
}

bool isNumber(std::string_view text) {
  try {
    strictValue(text);
  } catch (const Failure&) {
    return false;
  }
  return true;
}

}  // namespace kova::looks
