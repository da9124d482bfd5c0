// SPDX-License-Identifier: MIT
// The single-byte code page of the wizard's texts and its way to Unicode and back.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>

namespace kova {

/// 256 characters, one a byte. Every byte has a character of its own, so that a text survives the
/// way to Unicode and back unchanged.
class CodePage {
 public:
  /// In place of a character: there is none.
  static constexpr char32_t noCharacter = 0xFFFFFFFF;

  /// Windows-1252; its five unassigned bytes stand for the control characters of the same number.
  static CodePage windows1252();
  /// The Windows code page of this number by the system's table, Windows-1252 if there is none of
  /// single bytes. A byte that is no character there stands for one that no other byte has.
  static CodePage windows(int number);
  /// On Windows the system's own code page. Elsewhere that of the process's locale if it is
  /// single-byte with more than ASCII, else the Windows code page of its language; sets the locale
  /// of the process from its environment. Windows-1252 where that is none of single bytes.
  static CodePage ofLocale();

  /// What people call it: "Windows-1252".
  const std::string& name() const { return name_; }
  /// Unicode value of a byte.
  char32_t character(char byte) const { return characters_[static_cast<unsigned char>(byte)]; }
  /// Byte of a Unicode character, "?" if the code page has none.
  char byte(char32_t character) const;
  /// The capital of a letter, in any locale; the byte itself if the code page has none.
  char capital(char letter) const;
  /// A text as UTF-8, and UTF-8 as text ("?" for what the code page lacks or what is no UTF-8).
  std::string toUtf8(std::string_view text) const;
  std::string fromUtf8(std::string_view utf8) const;
  /// A text as the machine spells file names and environment values, and back.
  std::string toNative(std::string_view text) const;
  std::string fromNative(std::string_view native) const;
  /// A native text for a terminal, on one line: what would control the terminal or turn the
  /// direction of writing, and what is no character, is escaped byte by byte ("\n", "\033").
  std::string printable(std::string_view native) const;
  /// `native` comes back unchanged from the way to a text.
  bool survives(std::string_view native) const { return toNative(fromNative(native)) == native; }

 private:
  // ASCII, and what `upper` tells of the bytes from 80 on. A byte without a character gets one
  // that no other byte has.
  static CodePage ofTable(std::string name, const std::function<char32_t(unsigned byte)>& upper);

  std::string name_ = "Windows-1252";
  std::array<char32_t, 256> characters_{};
  bool ownFileNames_ = false;  ///< those of the locale are the text's own bytes, not UTF-8
};

}  // namespace kova
