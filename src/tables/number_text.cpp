// SPDX-License-Identifier: MIT
#include "tables/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <system_error>

#include "platform/failure.h"

namespace kova {

namespace {

// A double holds whole numbers and powers of ten of up to 15 digits exactly.
constexpr std::size_t exactDigits = 15;
constexpr int doubleDigits = 15;
constexpr int singleDigits = 7;
// The next 15-digit number can't be read back.
constexpr double largestWritten = 1.79769313486231E308;

bool isDigit(char character) {
  return character >= '0' && character <= '9';
}
bool isSkipped(char character) {
  return character == ' ' || character == '\t' || character == '\n';
}

struct LeadingNumber {
  double value = 0;
  std::size_t length = 0;  // in characters, 0 if there is no number
};

int digitOf(char character) {
  if (isDigit(character)) return character - '0';
  if (character >= 'A' && character <= 'F') return character - 'A' + 10;
  if (character >= 'a' && character <= 'f') return character - 'a' + 10;
  return std::numeric_limits<int>::max();
}

LeadingNumber prefixedNumber(std::string_view text) {
  const bool hexadecimal = text[1] == 'H' || text[1] == 'h';
  if (!hexadecimal && text[1] != 'O' && text[1] != 'o') return {};
  const int base = hexadecimal ? 16 : 8;
  LeadingNumber number;
  std::size_t end = 2;
  for (; end < text.size() && digitOf(text[end]) < base; ++end) {
    number.value = number.value * base + digitOf(text[end]);
  }
  if (end > 2) number.length = end;
  return number;
}

// A number that from_chars reports as out of range is either too large or too close to zero. The
// power of ten of its first digit that is not 0 shows which.
bool isTooLarge(std::string_view number) {
  const std::string_view mantissa = number.substr(0, number.find('E'));
  std::string_view exponent = number.substr(std::min(mantissa.size() + 1, number.size()));
  if (exponent.starts_with('+')) exponent.remove_prefix(1);
  std::int64_t power = 0;
  const auto parsed = std::from_chars(exponent.data(), exponent.data() + exponent.size(), power);
  if (parsed.ec == std::errc::result_out_of_range) return !exponent.starts_with('-');
  const auto point = std::min(mantissa.find('.'), mantissa.size());
  const auto leading = mantissa.find_first_of("123456789");
  return power + static_cast<std::int64_t>(point) > static_cast<std::int64_t>(leading);
}

// A sign, digits with a point, an exponent.
LeadingNumber decimalNumber(std::string_view text) {
  const std::size_t sign = text.starts_with('-') || text.starts_with('+') ? 1 : 0;
  const char* const start = text.data() + sign;
  double value = 0;
  const auto [end, error] = std::from_chars(start, text.data() + text.size(), value);
  if (error == std::errc::invalid_argument || (*start != '.' && !isDigit(*start))) return {};
  if (error == std::errc::result_out_of_range && isTooLarge({start, end})) {
    value = std::numeric_limits<double>::infinity();
  }
  return {text.starts_with('-') ? -value : value, static_cast<std::size_t>(end - text.data())};
}

LeadingNumber leadingNumber(std::string text) {
  if (text.size() > 1 && text.front() == '&') return prefixedNumber(text);
  for (char& c : text) {
    if (c == 'D' || c == 'd' || c == 'e') c = 'E';
  }
  return decimalNumber(text);
}

// Fast path for short numbers, which are nearly all: dividing two exact values gives the nearest
// double. False for anything but a minus sign, digits and a point.
bool readShortNumber(std::string_view text, double& value) {
  const bool negative = text.starts_with('-');
  if (negative) text.remove_prefix(1);
  if (text.empty() || text.size() > exactDigits) return false;
  std::int64_t digits = 0;
  std::int64_t scale = 0;  // of the digits after the point, 0 before it
  for (const char character : text) {
    if (isDigit(character)) {
      digits = digits * 10 + (character - '0');
      scale *= 10;
    } else if (character == '.' && scale == 0 && text.size() > 1) {
      scale = 1;
    } else {
      return false;
    }
  }
  value = static_cast<double>(digits);
  if (scale > 1) value /= static_cast<double>(scale);
  if (negative) value = -value;
  return true;
}

/// The value of a text that is a number as a whole; may be infinite.
std::optional<double> wholeNumber(std::string_view text) {
  constexpr std::string_view blanks = " \t";
  const auto first = std::min(text.find_first_not_of(blanks), text.size());
  const auto number = text.substr(first, text.find_last_not_of(blanks) + 1 - first);
  const LeadingNumber leading = leadingNumber(std::string(number));
  if (leading.length == 0 || leading.length != number.size()) return std::nullopt;
  return leading.value;
}

std::string shortened(std::string_view text) {
  constexpr std::size_t shown = 40;
  std::string quote = '"' + std::string(text.substr(0, shown));
  return quote + (text.size() > shown ? "...\"" : "\"");
}

template <class Whole>
Whole toWhole(double value) {
  using Limits = std::numeric_limits<Whole>;
  const double whole = std::nearbyint(value);
  if (whole >= Limits::min() && whole <= Limits::max()) return static_cast<Whole>(whole);
  throw Failure((std::isfinite(value) ? plainNumberText(value) : "The number") + " is outside " +
                std::to_string(Limits::min()) + " to " + std::to_string(Limits::max()));
}

template <class Number>
std::string shortestText(Number value, int digits) {
  if (!std::isfinite(value)) throw Failure("The number is not finite");
  if (value == 0) return "0";
  const auto written = [&](auto... form) {
    std::array<char, 64> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value, form...);
    return std::string(text.data(), end.ptr);
  };
  std::string text = written(std::chars_format::general, digits);
  // Subnormal numbers have fewer digits.
  if (std::fpclassify(value) == FP_SUBNORMAL) {
    const std::string fewest = written(std::chars_format::scientific);
    if (fewest.size() < text.size()) text = fewest;
  }
  std::replace(text.begin(), text.end(), 'e', 'E');
  return text;
}

std::string signedForm(std::string plain) {
  const bool negative = plain.front() == '-';
  if (!negative) plain.insert(plain.begin(), ' ');
  if (plain.compare(1, 2, "0.") == 0) plain.erase(1, 1);
  return plain;
}

}  // namespace

double textValue(std::string_view text) {
  double value = 0;
  if (readShortNumber(text, value)) return value;
  std::string compact(text);
  std::erase_if(compact, isSkipped);
  return leadingNumber(compact).value;
}

double strictValue(std::string_view text) {
  const auto value = wholeNumber(text);
  if (!value) throw Failure(shortened(text) + " is not a number");
  if (!std::isfinite(*value)) throw Failure(shortened(text) + " is too large");
  return *value;
}

bool isNumber(std::string_view text) {
  const auto value = wholeNumber(text);
  return value && std::isfinite(*value);
}

std::int16_t toInt16(double value) {
  return toWhole<std::int16_t>(value);
}

std::int32_t toInt32(double value) {
  return toWhole<std::int32_t>(value);
}

float toSingle(double value) {
  // Halfway between the largest single and its successor.
  constexpr double limit = 0x1.ffffffp127;
  if (std::abs(value) < limit) return static_cast<float>(value);
  throw Failure("The number is too large for single precision");
}

std::string plainNumberText(double value) {
  if (std::isfinite(value)) value = std::clamp(value, -largestWritten, largestWritten);
  return shortestText(value, doubleDigits);
}

std::string plainNumberText(float value) {
  return shortestText(value, singleDigits);
}

std::string plainNumberText(std::int32_t value) {
  return std::to_string(value);
}

std::string signedNumberText(double value) {
  return signedForm(plainNumberText(value));
}

std::string signedNumberText(float value) {
  return signedForm(plainNumberText(value));
}

std::string signedNumberText(std::int32_t value) {
  std::array<char, 12> text{' '};
  char* const digits = text.data() + (value < 0 ? 0 : 1);
  return {text.data(), std::to_chars(digits, text.data() + text.size(), value).ptr};
}

std::string signedNumberText(std::string_view text) {
  return signedNumberText(strictValue(text));
}

}  // namespace kova
