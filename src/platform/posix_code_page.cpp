// SPDX-License-Identifier: MIT
// Code pages of POSIX systems: that of the locale, and the C library's tables of the Windows ones.
#include <iconv.h>
#include <langinfo.h>

#include <algorithm>
#include <clocale>
#include <cstdint>
#include <cstdlib>
#include <cwchar>
#include <cwctype>
#include <locale>

#include "platform/code_page.h"

namespace kova {

namespace {

constexpr unsigned upperHalf = 0x80;
constexpr int westernPage = 1252;
constexpr int centralEuropeanPage = 1250;

struct LanguagesOfPage {
  int number;
  std::array<std::string_view, 8> languages;
};

// Every other language is written with the western page.
constexpr std::array<LanguagesOfPage, 8> windowsPages{{
    {centralEuropeanPage, {"cs", "hr", "hu", "pl", "ro", "sk", "sl", "sq"}},
    {1251, {"be", "bg", "mk", "ru", "sr", "uk"}},
    {1253, {"el"}},
    {1254, {"az", "tr"}},
    {1255, {"he"}},
    {1256, {"ar", "fa", "ur"}},
    {1257, {"et", "lt", "lv"}},
    {1258, {"vi"}},
}};

constexpr char32_t noCharacter = 0xFFFFFFFF;
// Where bytes go whose own number is another byte's character; nobody types these.
constexpr char32_t privateUse = 0xF700;

using Characters = std::array<char32_t, 256>;

/// The characters of one table, with `upper` telling those of the bytes from 80 on.
template <class Upper>
Characters charactersOf(Upper upper) {
  Characters characters{};
  for (unsigned byte = 0; byte < characters.size(); ++byte) {
    characters.at(byte) = byte < upperHalf ? byte : upper(byte);
  }
  return characters;
}

bool isMostlyLacking(const Characters& characters) {
  const auto lacking = std::count(characters.begin() + upperHalf, characters.end(), noCharacter);
  return lacking > static_cast<std::ptrdiff_t>(upperHalf) / 2;
}

/// Gives each byte without a character one that no other byte has.
void fillUp(Characters& characters) {
  for (unsigned byte = upperHalf; byte < characters.size(); ++byte) {
    if (characters.at(byte) != noCharacter) continue;
    const bool free = std::find(characters.begin(), characters.end(), byte) == characters.end();
    characters.at(byte) = free ? byte : privateUse + byte;
  }
}

char32_t localeCharacter(unsigned byte) {
  const std::wint_t character = std::btowc(static_cast<int>(byte));
  const bool isSurrogate = character >= 0xD800 && character <= 0xDFFF;
  return character == WEOF || isSurrogate ? noCharacter : character;
}

/// The C library's table of one code page.
class LibraryTable {
 public:
  explicit LibraryTable(const std::string& name)
      : converter_(::iconv_open("UTF-32BE", name.c_str())) {}
  LibraryTable(const LibraryTable&) = delete;
  LibraryTable& operator=(const LibraryTable&) = delete;
  LibraryTable(LibraryTable&&) = delete;
  LibraryTable& operator=(LibraryTable&&) = delete;
  ~LibraryTable() {
    if (isThere()) ::iconv_close(converter_);
  }

  // iconv_open tells its failure by a pointer that is -1.
  bool isThere() const { return reinterpret_cast<std::intptr_t>(converter_) != -1; }

  char32_t character(unsigned byte) const {
    constexpr auto failed = static_cast<std::size_t>(-1);
    char from = static_cast<char>(byte);
    std::array<char, 8> to{};
    char* source = &from;
    char* target = to.data();
    std::size_t sourceLeft = 1;
    std::size_t targetLeft = to.size();
    ::iconv(converter_, nullptr, nullptr, nullptr, nullptr);
    if (::iconv(converter_, &source, &sourceLeft, &target, &targetLeft) == failed) {
      return noCharacter;
    }
    // A letter waits inside for an accent that may follow it; here every byte stands alone.
    ::iconv(converter_, nullptr, nullptr, &target, &targetLeft);
    if (target - to.data() != 4) return noCharacter;
    char32_t character = 0;
    for (std::size_t i = 0; i < 4; ++i) {
      character = (character << 8U) | static_cast<unsigned char>(to.at(i));
    }
    return character;
  }

 private:
  iconv_t converter_;
};

}  // namespace

int windowsPageOf(std::string_view locale) {
  const std::string_view language = locale.substr(0, locale.find_first_of("_.@"));
  // Serbian is the one language here that has a locale for each of its two scripts.
  if (language == "sr" && locale.ends_with("@latin")) return centralEuropeanPage;
  const auto* const page =
      std::find_if(windowsPages.begin(), windowsPages.end(), [&](const LanguagesOfPage& one) {
        return !language.empty() && std::find(one.languages.begin(), one.languages.end(),
                                              language) != one.languages.end();
      });
  return page == windowsPages.end() ? westernPage : page->number;
}

CodePage CodePage::windows(int number) {
  if (number == westernPage) return windows1252();
  const std::string digits = std::to_string(number);
  const LibraryTable table("CP" + digits);
  if (!table.isThere()) return windows1252();
  CodePage page;
  page.name_ = "Windows-" + digits;
  page.characters_ = charactersOf([&](unsigned byte) { return table.character(byte); });
  fillUp(page.characters_);
  return page;
}

char CodePage::capital(char letter) const {
  // The locale of the process may be one that knows letters of its own only.
  static const locale_t unicode = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  if (unicode == nullptr) return static_cast<char>(std::toupper(letter, std::locale::classic()));
  const char found = byte(::towupper_l(character(letter), unicode));
  return found == '?' ? letter : found;
}

CodePage CodePage::ofLocale() {
  const bool isWhole = std::setlocale(LC_ALL, "") != nullptr;
  // That another category's locale is not installed says nothing about texts.
  const char* locale = std::setlocale(LC_CTYPE, isWhole ? nullptr : "");
  if (locale != nullptr && MB_CUR_MAX != 1) return windows(windowsPageOf(locale));
  if (!isWhole) return windows1252();
  CodePage page;
  page.characters_ = charactersOf(localeCharacter);
  if (isMostlyLacking(page.characters_)) return windows1252();
  fillUp(page.characters_);
  page.name_ = ::nl_langinfo(CODESET);
  page.ownFileNames_ = true;
  return page;
}

}  // namespace kova
