// SPDX-License-Identifier: MIT
// The single-byte code page of the wizard's texts, and its conversion to and from Unicode.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>

namespace kova {

/// 256 characters, one per byte. Every byte has a character of its own, so that a text survives the
/// conversion to Unicode and back.
class CodePage {
 public:
  /// Means "no character".
  static constexpr char32_t noCharacter = 0xFFFFFFFF;

  /// Windows-1252; its five unassigned bytes are the control characters with the same number.
  static CodePage windows1252();
  /// The Windows code page of this number from the system's table; Windows-1252 if it is unknown or
  /// not single-byte. An unassigned byte gets a character that no other byte has.
  static CodePage windows(int number);
  /// On Windows the system's code page. Elsewhere sets the locale of the process from its
  /// environment, and returns the locale's code page if it is single-byte with more than ASCII,
  /// else the Windows code page of its language. Windows-1252 if that is not single-byte.
  static CodePage ofLocale();

  /// For messages: "Windows-1252".
  const std::string& name() const { return name_; }
  /// Unicode value of a byte.
  char32_t character(char byte) const { return characters_[static_cast<unsigned char>(byte)]; }
  /// Byte of a Unicode character, "?" if the code page has none.
  char byte(char32_t character) const;
  /// The upper case of a letter, in any locale; the byte itself if the code page has none.
  char capital(char letter) const;
  /// Conversion to and from UTF-8; "?" for characters that the code page lacks and invalid UTF-8.
  std::string toUtf8(std::string_view text) const;
  std::string fromUtf8(std::string_view utf8) const;
  /// Conversion to and from native text: file names and environment values of the machine.
  std::string toNative(std::string_view text) const;
  std::string fromNative(std::string_view native) const;
  /// A native text for a terminal, on one line. Control characters, changes of the writing
  /// direction and invalid characters are escaped byte by byte ("\n", "\033").
  std::string printable(std::string_view native) const;
  /// `native` survives the conversion to a text and back.
  bool survives(std::string_view native) const { return toNative(fromNative(native)) == native; }

 private:
  // ASCII, and from byte 0x80 on the characters that `upper` returns. An unassigned byte gets a
  // character that no other byte has.
  static CodePage ofTable(std::string name, const std::function<char32_t(unsigned byte)>& upper);

  std::string name_ = "Windows-1252";
  std::array<char32_t, 256> characters_{};
  bool ownFileNames_ = false;  ///< file names are in this code page, not in UTF-8
};

}  // namespace kova
