// SPDX-License-Identifier: MIT
// Numbers in texts against the standard library's readers, and back.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <optional>
#include <sstream>
#include <string>
#include <utility>

#include "harness.h"
#include "platform/failure.h"
#include "tables/number_text.h"

namespace kova::fuzz {
namespace {

/// Result of `act`, or nothing if it fails.
template <class Act>
auto unlessFails(Act act) -> std::optional<decltype(act())> {
  try {
    return act();
  } catch (const Failure&) {
    return std::nullopt;
  }
}

/// Leading number of a text without blanks, and its length. Not a number beyond what is exact.
std::pair<double, std::ptrdiff_t> leading(std::string text) {
  if (text.starts_with('&') && text.size() > 1) {
    const int base = std::toupper(text[1]) == 'H' ? 16 : std::toupper(text[1]) == 'O' ? 8 : 0;
    if (base == 0) return {};
    std::uint64_t whole = 0;
    const auto read = std::from_chars(text.data() + 2, text.data() + text.size(), whole, base);
    if (read.ptr == text.data() + 2) return {};
    const bool exact = read.ec == std::errc() && whole < (std::uint64_t{1} << 53U);
    return {exact ? static_cast<double>(whole) : NAN, read.ptr - text.data()};
  }
  for (char& c : text) c = c == 'D' || c == 'd' ? 'e' : c;
  text.resize(std::min(text.find_first_not_of("0123456789+-.eE"), text.size()));
  char* end = nullptr;
  const double value = std::strtod(text.c_str(), &end);
  return {value, end - text.c_str()};
}

void checkText(const std::string& text) {
  std::string compact = text;
  std::erase_if(compact, [](char c) { return c == ' ' || c == '\t' || c == '\n'; });
  const double value = leading(compact).first;
  require(std::isnan(value) || textValue(text) == value, "the leading number is read");
  const auto first = std::min(text.find_first_not_of(" \t"), text.size());
  const std::string trimmed = text.substr(first, text.find_last_not_of(" \t") + 1 - first);
  const auto [number, length] = leading(trimmed);
  if (std::isnan(number)) return;
  const auto strict = unlessFails([&] { return strictValue(text); });
  const bool whole = length > 0 && length == std::ssize(trimmed) && std::isfinite(number);
  require(strict == (whole ? std::optional(number) : std::nullopt), "a whole text is a number");
}

/// The nearest whole number from -limit to limit - 1.
std::optional<double> nearest(double value, double limit) {
  const double whole = value - std::remainder(value, 1);
  return whole >= -limit && whole < limit ? std::optional(whole) : std::nullopt;
}

template <class Number>
void checkWritten(Number number, double precision) {
  const std::string text = plainNumberText(number);
  const auto back = static_cast<Number>(textValue(text));
  require(std::fabs(back - number) <= std::fabs(number) * precision, "a written number reads back");
  require(plainNumberText(back) == text, "and is written the same again");
  const std::string file = signedNumberText(number);
  require(static_cast<Number>(textValue(file)) == back, "a file gives it back");
  require(file[0] == (number < 0 ? '-' : ' '), "a file has a place for the sign");
}

void checkValue(double value) {
  require(unlessFails([&] { return toInt16(value); }) == nearest(value, 0x1p15), "16 bits round");
  const auto whole = unlessFails([&] { return toInt32(value); });
  require(whole == nearest(value, 0x1p31), "32 bits round");
  if (whole) checkWritten(*whole, 0);
  std::ostringstream text;
  text << std::hexfloat << value;
  const float expected = std::strtof(text.str().c_str(), nullptr);
  const auto single = unlessFails([&] { return toSingle(value); });
  require(single == (std::isfinite(expected) ? std::optional(expected) : std::nullopt),
          "a single is the nearest");
  if (single) checkWritten(*single, 6e-7);
  if (std::isfinite(value)) checkWritten(value, 5.5e-15);
}

}  // namespace

void check(std::string_view bytes) {
  double value = 0;
  std::memcpy(&value, bytes.data(), std::min(bytes.size(), sizeof value));
  checkValue(value);
  checkText(std::string(bytes));
  checkValue(textValue(bytes));
}

}  // namespace kova::fuzz
