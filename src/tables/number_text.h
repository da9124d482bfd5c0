// SPDX-License-Identifier: MIT
// Numbers in texts: one conversion each way for every table and every field.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kova {

/// Leading number of a text, 0 if it does not begin with one. Spaces, tabs and line feeds are
/// skipped wherever they stand; "." is the decimal point, the exponent letter is E or D in either
/// case, &H and &O lead a hexadecimal or octal whole number. Never fails; a number too large for a
/// double is infinite.
double textValue(std::string_view text);

/// The number that a text is as a whole: blanks (space, tab) around, one sign, digits with at most
/// one decimal point, an exponent, or &H / &O and digits. Throws Failure for any other text, the
/// empty one included, and for a number too large for a double.
double strictValue(std::string_view text);
/// `strictValue` takes the text.
bool isNumber(std::string_view text);

/// The nearest whole number, a half going to the even neighbour. Throws Failure if it does not fit
/// the type.
std::int16_t toInt16(double value);
std::int32_t toInt32(double value);
/// The nearest single. Throws Failure if it is too large for one.
float toSingle(double value);

/// Shortest decimal text of a number, a digit ahead of the point: at most 15 significant digits of
/// a double, 7 of a single, with an exponent ("1E+20") from there on and below 0.0001. Throws
/// Failure for a number that is not finite.
std::string plainNumberText(double value);
std::string plainNumberText(float value);
std::string plainNumberText(std::int32_t value);

/// The form of numbers in files: as plainNumberText, but without the zero ahead of the point, and
/// with one blank ahead of a number that is not negative.
std::string signedNumberText(double value);
std::string signedNumberText(float value);
std::string signedNumberText(std::int32_t value);
/// The same of the number that the text is by strictValue, with its failures.
std::string signedNumberText(std::string_view text);

}  // namespace kova
