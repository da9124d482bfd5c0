// SPDX-License-Identifier: MIT
// Code pages of Windows itself.
#include "platform/code_page.h"

#include <windows.h>

namespace kova {

namespace {

constexpr int westernPage = 1252;

char32_t characterOf(UINT page, unsigned byte) {
  const char text = static_cast<char>(byte);
  wchar_t character = 0;
  const int count = ::MultiByteToWideChar(page, MB_ERR_INVALID_CHARS, &text, 1, &character, 1);
  return count == 1 ? character : CodePage::noCharacter;
}

}  // namespace

CodePage CodePage::windows(int number) {
  const auto page = static_cast<UINT>(number);
  CPINFO information{};
  const bool isSingleByte =
      ::GetCPInfo(page, &information) != FALSE && information.MaxCharSize == 1;
  if (number == westernPage || !isSingleByte) return windows1252();
  return ofTable("Windows-" + std::to_string(number),
                 [&](unsigned byte) { return characterOf(page, byte); });
}

char CodePage::capital(char letter) const {
  const auto small = static_cast<wchar_t>(character(letter));
  wchar_t capital = 0;
  ::LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_UPPERCASE, &small, 1, &capital, 1, nullptr, nullptr,
                  0);
  const char found = byte(capital);
  return found == '?' ? letter : found;
}

CodePage CodePage::ofLocale() {
  return windows(static_cast<int>(::GetACP()));
}

}  // namespace kova
