// SPDX-License-Identifier: MIT
#include "platform/code_page.h"

#include <gtest/gtest.h>

namespace kova::test {

TEST(CodePage, EveryByteSurvivesTheWayToUnicodeAndNothingElseDoes) {
  ::setenv("LC_ALL", "C.UTF-8", 1);
  const CodePage page = CodePage::ofLocale();
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  EXPECT_EQ(page.fromNative(page.toNative(all)), all);
  EXPECT_EQ(page.toUtf8("\x80 \xB0\x81"), "\u20AC \u00B0\u0081");
  // Foreign characters; a lone lead, an overlong form, a surrogate, a cut end: one mark a byte.
  EXPECT_EQ(page.fromUtf8("a\u03A9b\U0001F600c"), "a?b?c");
  EXPECT_EQ(page.fromUtf8("\xC3(\xC0\xAF\xED\xA0\x80x\xE2\x82"), "?(?????x??");
  ::setenv("LC_ALL", "C", 1);
  EXPECT_EQ(CodePage::ofLocale().character('\x80'), 0x20AC) << "an ASCII locale is too small";
}

}  // namespace kova::test
