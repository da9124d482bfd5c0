// SPDX-License-Identifier: MIT
// The single-byte code page of the wizard's texts and its way to Unicode and back.
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace kova {

/// 256 characters, one a byte. Every byte has a character of its own, so that a text survives the
/// way to Unicode and back unchanged.
class CodePage {
 public:
  /// Windows-1252; its five unassigned bytes stand for the control characters of the same number.
  static CodePage windows1252();
  /// Code page of the process's locale if that is single-byte with more than ASCII, else
  /// Windows-1252. Sets the locale of the process from its environment.
  static CodePage ofLocale();

  /// Unicode value of a byte.
  char32_t character(char byte) const { return characters_[static_cast<unsigned char>(byte)]; }
  /// Byte of a Unicode character, "?" if the code page has none.
  char byte(char32_t character) const;
  /// A text as UTF-8, and UTF-8 as text ("?" for what the code page lacks or what is no UTF-8).
  std::string toUtf8(std::string_view text) const;
  std::string fromUtf8(std::string_view utf8) const;
  /// A text as the machine spells file names and environment values, and back.
  std::string toNative(std::string_view text) const;
  std::string fromNative(std::string_view native) const;

 private:
  std::array<char32_t, 256> characters_{};
  bool ownFileNames_ = false;  ///< those of the locale are the text's own bytes, not UTF-8
};

}  // namespace kova
