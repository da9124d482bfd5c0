// SPDX-License-Identifier: MIT
// Lines of the device box, and the range at the head of a description.
#include <gtest/gtest.h>

#include <array>

#include "editing/device_panel.h"
#include "tables/range_prefix.h"

namespace kova::test {

TEST(PanelTexts, LinesAndCaretPositionsOfTheDeviceBox) {
  const std::string box = "\r\nA\rB\r\n\r\nC";
  const std::vector<std::size_t> starts{0, 2, 7, 9};
  for (std::int16_t line = 0; line < 4; ++line) {
    const std::size_t start = starts[static_cast<std::size_t>(line)];
    EXPECT_EQ(findSelStartAtLine(box, line), static_cast<int>(start)) << line;
    EXPECT_EQ(findLineFromMultilineText(box, start), line) << line;
  }
  EXPECT_EQ(findLineFromMultilineText(box, 6), 1) << "within a line end";
  EXPECT_EQ(findSelStartAtLine(box, 9), 12) << "behind the last line";
  EXPECT_EQ(findSelStartAtLine("", 9), 0);
  const std::string large = std::string(40000, 'x') + "\r\n";
  EXPECT_THROW(findLineFromMultilineText(large, 40000), Failure);
  EXPECT_THROW(findSelStartAtLine(large, 1), Failure);
}

TEST(PanelTexts, ADescriptionBeginsWithItsRange) {
  using Parts = std::array<std::string, 5>;
  const std::vector<Parts> cases = {{"[0:100 V]Supply voltage", "0", "100", "V", "Supply voltage"},
                                    {"[-1.5:1.5 mA/cm2]x", "-1.5", "1.5", "mA/cm2", "x"},
                                    {"[0:3 ]Start ramp", "0", "3", "", "Start ramp"},
                                    {"[0:1:2 V]x[y]z", "0", "1:2", "V", "x[y]z"},
                                    {"[ b]x", "no text", "", "b", "x"},
                                    {"[0:100]x", "0", "no text", "none", "x"},
                                    {"[abc]x", "no text", "no text", "none", "x"},
                                    {"x[0:1 V]y", "0", "1", "V]", "y"},
                                    {"abc]x", "no text", "no text", "", "abc]x"},
                                    {"[ab", "no text", "no text", "", "[ab"},
                                    {"[]x", "no text", "no text", "", "[]x"},
                                    {"[a]x", "no text", "no text", "", "[a]x"},
                                    {"]x[0:1 V]", "no text", "no text", "", "]x[0:1 V]"}};
  for (const Parts& expected : cases) {
    const DescriptionParts parts = parseDescription(expected[0]);
    const Parts found = {expected[0], parts.minimum.value_or("no text"),
                         parts.maximum.value_or("no text"), parts.units, parts.rest};
    EXPECT_EQ(found, expected);
    EXPECT_EQ(parts.hasPrefix, parts.rest != expected[0]) << expected[0];
  }
}

}  // namespace kova::test
