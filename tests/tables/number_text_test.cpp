// SPDX-License-Identifier: MIT
#include "tables/number_text.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <sstream>
#include <vector>

#include "platform/failure.h"

namespace kova::test {

constexpr double infinite = std::numeric_limits<double>::infinity();

// Takes "text=value|text=value" apart, the values as the C library reads them.
std::vector<std::pair<std::string, double>> cases(const std::string& table) {
  std::vector<std::pair<std::string, double>> result;
  std::istringstream lines(table);
  for (std::string line; std::getline(lines, line, '|');) {
    const auto end = line.rfind('=');
    result.emplace_back(line.substr(0, end), std::strtod(line.c_str() + end + 1, nullptr));
  }
  return result;
}

TEST(NumberText, Reading) {
  for (const auto& [text, value] :
       cases(" 3=3|+5=5|-5 =-5|.5=.5|5.=5|-0.25=-.25|1e3=1000|1D-2=.01|&H1f=31|&o17=15|1e-400=0|"
             "\t007.50=7.5|75.e-1=7.5|1e-99999999999999999999=0|4.9e-324=4.9e-324|"
             "9007199254740993=9007199254740993|123456789.123456=123456789.123456")) {
    EXPECT_EQ(textValue(text), value) << text;
    EXPECT_EQ(strictValue(text), value) << text;
  }
  for (const auto& [text, value] :
       cases("=0|abc=0|--5=0|+-5=0|-=0|.=0|-.=0|e5=0|inf=0|nan=0|0x10=0|&O8=0|&H=0|-&H1=0|&Hg=0|"
             "&=0|\xA0 5=0|- 5=-5|1,5=1|1\r2=1|1E=1|1E+=1|1.2.3=1.2|10%=10|2d+1x=20|& H 1 f=31|"
             "5-=5|1 E 2=100|\n1 2\t3\n4=1234|1e400=inf|-1e400=-inf|1e99999999999999999999=inf")) {
    EXPECT_EQ(textValue(text), value) << text;
    EXPECT_THROW(strictValue(text), Failure) << text;
  }
  EXPECT_EQ(textValue("0." + std::string(400, '0') + "1e401"), 1);
  EXPECT_EQ(textValue(std::string(400, '9')), infinite);
}

TEST(NumberText, Writing) {
  for (const auto& [text, value] :
       cases(" 0=-0| .25=.25|-.25=-.25| .3=.30000000000000004| .0001=.0001| 1E-05=1e-5|-3=-3|"
             " 5E-324=5e-324| 100000000000000=1e14| 1E+15=1e15| 1E+15=999999999999999.9|"
             " 1.79769313486231E+308=1.7976931348623157e308")) {
    EXPECT_EQ(signedNumberText(value), text);
  }
  for (const auto& [text, value] :
       cases(" 40.5=40.5| 1.234568=1.23456789| .1=.1| 1E+07=1e7| 1.677722E+07=16777216|"
             " 1E-45=1e-45| 9999999=9999999")) {
    EXPECT_EQ(signedNumberText(static_cast<float>(value)), text);
  }
  EXPECT_EQ(plainNumberText(-.25), "-0.25");
  EXPECT_THROW(plainNumberText(infinite), Failure);
  std::seed_seq seed{1};
  std::mt19937_64 random(seed);
  for (int count = 0; count < 20000; ++count) {
    const auto value = std::bit_cast<double>(random());
    if (!std::isnormal(value)) continue;
    std::array<char, 32> reference{};
    ASSERT_GT(std::snprintf(reference.data(), reference.size(), "%.15G", value), 0);
    EXPECT_EQ(plainNumberText(value), reference.data());
    EXPECT_EQ(textValue(signedNumberText(value)), std::strtod(reference.data(), nullptr));
  }
}

TEST(NumberText, WholeNumbersAndSingles) {
  for (const auto& [value, whole] : std::vector<std::pair<double, int>>{
           {2.5, 2}, {3.5, 4}, {-2.5, -2}, {32767.49, 32767}, {-32768.5, -32768}}) {
    EXPECT_EQ(toInt16(value), whole);
  }
  for (const double value : {32767.5, -32769., infinite}) EXPECT_THROW(toInt16(value), Failure);
  EXPECT_EQ(toInt32(2147483647.4), 2147483647);
  EXPECT_THROW(toInt32(2147483647.5), Failure);
  EXPECT_EQ(toSingle(3.4028235e38), std::numeric_limits<float>::max());
  for (const double value : {3.41e38, -infinite}) EXPECT_THROW(toSingle(value), Failure);
}

}  // namespace kova::test
