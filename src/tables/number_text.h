// SPDX-License-Identifier: MIT
// Conversion between numbers and texts, for all tables and fields.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kova {

/// Leading number of a text, 0 if it does not begin with one. Spaces, tabs and line feeds are
/// skipped everywhere. "." is the decimal point, E or D in either case is the exponent sign, &H and
/// &O introduce hexadecimal and octal whole numbers. Never fails; a number too large for a double
/// is infinite.
double textValue(std::string_view text);

/// Value of a text that is a number as a whole: a sign, digits with at most one decimal point and
/// an exponent, or &H / &O and digits, surrounded by spaces and tabs. Throws Failure for any other
/// text, also the empty one, and for a number too large for a double.
double strictValue(std::string_view text);
/// `strictValue` accepts the text.
bool isNumber(std::string_view text);

/// The nearest whole number; halves round to even. Throws Failure if it does not fit the type.
std::int16_t toInt16(double value);
std::int32_t toInt32(double value);
/// The nearest single. Throws Failure if the number is too large.
float toSingle(double value);

/// Shortest decimal text of a number, with a digit before the point: at most 15 significant digits
/// of a double, 7 of a single. Larger numbers and those below 0.0001 get an exponent ("1E+20").
/// Throws Failure for a number that is not finite.
std::string plainNumberText(double value);
std::string plainNumberText(float value);
std::string plainNumberText(std::int32_t value);

/// The layout of numbers in files: as plainNumberText, but without a zero before the point, and
/// with one space before a number that is not negative.
std::string signedNumberText(double value);
std::string signedNumberText(float value);
std::string signedNumberText(std::int32_t value);
/// The same for the `strictValue` of a text. Throws Failure as that does.
std::string signedNumberText(std::string_view text);

}  // namespace kova
