// SPDX-License-Identifier: MIT
#include "platform/code_page.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace kova {

namespace {

constexpr unsigned upperHalf = 0x80;

// Characters of the bytes 80 to 9F; the others are those of the same number.
constexpr std::array<char32_t, 32> windowsCharacters{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  //
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,  //
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  //
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

// Where bytes go whose own number is another byte's character; nobody types these.
constexpr char32_t privateUse = 0xF700;

bool isSurrogate(char32_t character) {
  return character >= 0xD800 && character <= 0xDFFF;
}

void appendUtf8(std::string& utf8, char32_t character) {
  const auto append = [&](char32_t bits) { utf8 += static_cast<char>(bits); };
  const auto follow = [&](unsigned shift) { append(0x80U | ((character >> shift) & 0x3FU)); };
  if (character < 0x80) {
    append(character);
  } else if (character < 0x800) {
    append(0xC0U | (character >> 6U));
    follow(0);
  } else if (character < 0x10000) {
    append(0xE0U | (character >> 12U));
    follow(6);
    follow(0);
  } else {
    append(0xF0U | (character >> 18U));
    follow(12);
    follow(6);
    follow(0);
  }
}

// Takes the first character off `utf8`; of what is no character, one byte.
char32_t takeCharacter(std::string_view& utf8) {
  constexpr std::array<char32_t, 5> smallest{0, 0, 0x80, 0x800, 0x10000};
  const auto byte = [&](std::size_t index) { return static_cast<unsigned char>(utf8[index]); };
  // As many leading ones as there are bytes, none for a byte that stands alone.
  const auto ones = static_cast<std::size_t>(std::countl_one(byte(0)));
  const std::size_t size = std::max<std::size_t>(ones, 1);
  bool valid = ones != 1 && size < smallest.size() && size <= utf8.size();
  char32_t character = byte(0) & (0xFFU >> ones);
  for (std::size_t index = 1; valid && index < size; ++index) {
    valid = (byte(index) & 0xC0U) == 0x80;
    character = (character << 6U) | (byte(index) & 0x3FU);
  }
  valid =
      valid && character >= smallest.at(size) && character <= 0x10FFFF && !isSurrogate(character);
  utf8.remove_prefix(valid ? size : 1);
  return valid ? character : CodePage::noCharacter;
}

bool isPrintable(char32_t character) {
  struct Range {
    char32_t first;
    char32_t last;
  };
  // Controls, marks of direction, separators of lines, controls of direction.
  constexpr std::array<Range, 6> others{{{0, 0x1F},
                                         {0x7F, 0x9F},
                                         {0x061C, 0x061C},
                                         {0x200E, 0x200F},
                                         {0x2028, 0x202E},
                                         {0x2066, 0x2069}}};
  return character != CodePage::noCharacter &&
         std::none_of(others.begin(), others.end(), [&](const Range& range) {
           return range.first <= character && character <= range.last;
         });
}

void appendEscaped(std::string& line, char character) {
  constexpr std::string_view letters = "abtnvfr";
  const auto byte = static_cast<unsigned char>(character);
  const auto digit = [&](unsigned shift) { return static_cast<char>('0' + (byte >> shift & 7U)); };
  line += '\\';
  if (byte >= '\a' && byte <= '\r') {
    line += letters[byte - '\a'];
  } else {
    ((line += digit(6)) += digit(3)) += digit(0);
  }
}

}  // namespace

CodePage CodePage::windows1252() {
  CodePage page;
  for (unsigned byte = 0; byte < page.characters_.size(); ++byte) page.characters_.at(byte) = byte;
  std::copy(windowsCharacters.begin(), windowsCharacters.end(),
            page.characters_.begin() + upperHalf);
  return page;
}

CodePage CodePage::ofTable(std::string name, const std::function<char32_t(unsigned byte)>& upper) {
  CodePage page;
  page.name_ = std::move(name);
  auto& all = page.characters_;
  for (unsigned byte = 0; byte < all.size(); ++byte) {
    all.at(byte) = byte < upperHalf ? byte : upper(byte);
  }
  for (unsigned byte = upperHalf; byte < all.size(); ++byte) {
    if (all.at(byte) != noCharacter) continue;
    const bool free = std::find(all.begin(), all.end(), byte) == all.end();
    all.at(byte) = free ? byte : privateUse + byte;
  }
  return page;
}

char CodePage::byte(char32_t character) const {
  if (character < upperHalf) return static_cast<char>(character);
  const auto found = std::find(characters_.begin(), characters_.end(), character);
  return found == characters_.end() ? '?' : static_cast<char>(found - characters_.begin());
}

std::string CodePage::toUtf8(std::string_view text) const {
  std::string utf8;
  utf8.reserve(text.size());
  for (const char one : text) appendUtf8(utf8, character(one));
  return utf8;
}

std::string CodePage::fromUtf8(std::string_view utf8) const {
  std::string text;
  text.reserve(utf8.size());
  while (!utf8.empty()) text += byte(takeCharacter(utf8));
  return text;
}

std::string CodePage::toNative(std::string_view text) const {
  return ownFileNames_ ? std::string(text) : toUtf8(text);
}

std::string CodePage::fromNative(std::string_view native) const {
  return ownFileNames_ ? std::string(native) : fromUtf8(native);
}

std::string CodePage::printable(std::string_view native) const {
  std::string line;
  while (!native.empty()) {
    std::string_view rest = native.substr(1);
    char32_t first = character(native.front());
    if (!ownFileNames_) first = takeCharacter(rest = native);
    const std::string_view bytes = native.substr(0, native.size() - rest.size());
    if (isPrintable(first)) {
      line += bytes;
    } else {
      for (const char byte : bytes) appendEscaped(line, byte);
    }
    native = rest;
  }
  return line;
}

}  // namespace kova
