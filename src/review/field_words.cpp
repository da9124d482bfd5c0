// SPDX-License-Identifier: MIT
#include "review/field_words.h"

#include <algorithm>

#include "platform/failure.h"
#include "tables/number_text.h"

namespace kova::looks {
namespace {

template <class Change>
std::string changed(std::string_view text, Change change) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), change);
  return result;
}

}  // namespace

std::string quoted(std::string_view text) {
  return '"' + std::string(text) + '"';
}

std::string upperCase(std::string_view text) {
  return changed(text, [](char letter) {
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
  });
}

std::string lowerCase(std::string_view text) {
  return changed(text, [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
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
