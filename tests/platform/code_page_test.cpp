// SPDX-License-Identifier: MIT
#include "platform/code_page.h"

#include <gtest/gtest.h>

#include <map>
#include <vector>

#include "platform/posix/languages.h"

namespace kova::test {

TEST(CodePage, KnowsNoForeignCharacters) {
  ::setenv("LC_ALL", "C.UTF-8", 1);
  const CodePage page = CodePage::ofLocale();
  EXPECT_EQ(page.name(), "Windows-1252");
  EXPECT_EQ(page.toUtf8("\x80 \xB0\x81"), "\u20AC \u00B0\u0081");
  // Foreign characters; a lone lead, an overlong form, a surrogate, a cut end: one mark a byte.
  EXPECT_EQ(page.fromUtf8("a\u03A9b\U0001F600c"), "a?b?c");
  EXPECT_EQ(page.fromUtf8("\xC3(\xC0\xAF\xED\xA0\x80x\xE2\x82"), "?(?????x??");
  EXPECT_EQ(page.printable("\u009F\u00A0\u200D\xC3\v\u2069x\u202F"),
            "\\302\\237\u00A0\u200D\\303\\v\\342\\201\\251x\u202F");
  ::setenv("LC_ALL", "C", 1);
  EXPECT_EQ(CodePage::ofLocale().character('\x80'), 0x20AC) << "an ASCII locale is too small";
}

TEST(CodePage, LettersHaveTheirCapitalsInAnyLocale) {
  const CodePage western = CodePage::windows1252();
  const std::string letters = "az\xE9\xFF\x9A?\xB5\x83\xDF[9";
  std::string capitals;
  for (const char letter : letters) capitals += western.capital(letter);
  EXPECT_EQ(capitals, "AZ\xC9\x9F\x8A?\xB5\x83\xDF[9");
  EXPECT_EQ(CodePage::windows(1251).capital('\xFF'), '\xDF');
}

TEST(CodePage, ALanguageHasThePageOfItsDesktopSystems) {
  const std::map<int, std::vector<const char*>> locales = {
      {1250, {"pl_PL.UTF-8", "ro", "sr_RS@latin", "sr_RS.UTF-8@latin"}},
      {1251, {"sr_RS.UTF-8", "uk_UA.utf8"}},
      {1252, {"de_DE@euro", "csb_PL", "C.UTF-8", "POSIX", ""}},
      {1253, {"el_GR"}},
      {1254, {"az_AZ"}},
      {1255, {"he_IL.UTF-8"}},
      {1256, {"ur_PK"}},
      {1257, {"lv_LV"}},
      {1258, {"vi_VN"}}};
  for (const auto& [page, names] : locales) {
    for (const auto* name : names) EXPECT_EQ(windowsPageOf(name), page) << name;
  }
}

TEST(CodePage, TheTablesAreThoseOfTheCLibrary) {
  EXPECT_EQ(CodePage::windows(1250).fromNative("/home/\u0142ukasz"), "/home/\xB3ukasz");
  // An accent that combines; bytes without a character.
  EXPECT_EQ(CodePage::windows(1258).toUtf8("e\xEC"), "e\u0301");
  EXPECT_EQ(CodePage::windows(1253).toUtf8("\x81\xAA"), "\u0081\u00AA");
  EXPECT_EQ(CodePage::windows(9999).name(), "Windows-1252") << "no such table";
}

}  // namespace kova::test
