// SPDX-License-Identifier: MIT
// Lines of the device box, and the range at the head of a description.
#include <gtest/gtest.h>

#include "editing/device_panel.h"
#include "editing/range_prefix.h"

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
  const DescriptionParts parts = takeApart("[0:1:2 V]x[y]z");
  EXPECT_EQ(parts.minimum, "0");
  EXPECT_EQ(parts.maximum, "1:2");
  EXPECT_EQ(parts.rest, "x[y]z");
  EXPECT_TRUE(takeApart("[ b]x").hasPrefix) << "two characters are enough";
  EXPECT_FALSE(takeApart("abc]x").hasPrefix);
  EXPECT_EQ(rangePrefix("-1", "1", "none"), "[-1:1 ]");
}

}  // namespace kova::test
