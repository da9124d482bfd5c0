// SPDX-License-Identifier: MIT
// Compares numbers in texts, separated by "|", with the standard library's reader; and back.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <sstream>
#include <string>

#include "harness.h"
#include "platform/failure.h"
#include "tables/number_text.h"

namespace kova::fuzz {
namespace {

/// The complete text is a number that equals `value`.
bool isNumber(const std::string& text, double value) {
  try {
    return strictValue(text) == value;
  } catch (const Failure&) {
    return false;
  }
}

void checkText(const std::string& text) {
  std::string compact = text;
  std::erase_if(compact, [](char c) { return c == ' ' || c == '\t' || c == '\n'; });
  // Whole numbers of other bases have cases of their own.
  if (compact.starts_with('&')) return;
  for (char& c : compact) c = c == 'D' || c == 'd' ? 'e' : c;
  const auto end = std::min(compact.find_first_not_of("0123456789+-.eE"), compact.size());
  const std::string head = compact.substr(0, end);
  char* stop = nullptr;
  const double value = std::strtod(head.c_str(), &stop);
  require(textValue(text) == value, "the leading number is read");
  // The reader of numbers in tables skips spaces between digits, the strict one refuses them.
  const auto first = std::min(text.find_first_not_of(" \t"), text.size());
  const std::string trimmed = text.substr(first, text.find_last_not_of(" \t") + 1 - first);
  const bool whole = trimmed.size() == compact.size() && !head.empty() && *stop == '\0' &&
                     end == compact.size() && std::isfinite(value);
  require(isNumber(text, value) == whole, "a whole text is a number");
}

template <class Number>
void checkWritten(Number number, double precision) {
  const std::string text = plainNumberText(number);
  const auto back = static_cast<Number>(textValue(text));
  require(std::fabs(back - number) <= std::fabs(number) * precision, "a written number reads back");
  require(plainNumberText(back) == text, "and is written the same again");
  require(static_cast<Number>(textValue(signedNumberText(number))) == back, "also from a file");
}

void checkValue(double value) {
  if (std::isfinite(value)) checkWritten(value, 5.5e-15);
  std::ostringstream text;
  text << std::hexfloat << value;
  const float single = std::strtof(text.str().c_str(), nullptr);
  if (!std::isfinite(single)) return;
  require(toSingle(value) == single, "a single is the nearest");
  checkWritten(single, 6e-7);
}

}  // namespace

void check(std::string_view bytes) {
  double value = 0;
  std::memcpy(&value, bytes.data(), std::min(bytes.size(), sizeof value));
  checkValue(value);
  std::istringstream texts{std::string(bytes)};
  for (std::string text; std::getline(texts, text, '|');) {
    checkText(text);
    checkValue(textValue(text));
  }
}

}  // namespace kova::fuzz
