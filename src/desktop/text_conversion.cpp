// SPDX-License-Identifier: MIT
#include "desktop/text_conversion.h"

#include <QTextDocument>
#include <algorithm>

namespace kova {
namespace {

constexpr std::string_view lineEnd = "\r\n";

/// Most characters have the same number in the code page, so they need no search.
char byteOf(char32_t character, const CodePage& page) {
  const char same = static_cast<char>(static_cast<unsigned char>(character));
  return page.character(same) == character ? same : page.byte(character);
}

}  // namespace

QString toShown(std::string_view text, const CodePage& page) {
  QString shown(static_cast<qsizetype>(text.size()), Qt::Uninitialized);
  std::transform(text.begin(), text.end(), shown.begin(),
                 [&page](char byte) { return QChar(static_cast<char16_t>(page.character(byte))); });
  return shown;
}

std::string toText(QStringView shown, const CodePage& page) {
  std::string text;
  text.reserve(static_cast<std::size_t>(shown.size()));
  for (const char32_t character : shown.toUcs4()) text += byteOf(character, page);
  return text;
}

QString toShownLines(std::string_view text, const CodePage& page) {
  QString shown = toShown(text, page);
  shown.replace(QStringLiteral("\r\n"), QString(QChar::ParagraphSeparator));
  shown.replace(u'\n', QChar::LineSeparator);
  return shown;
}

std::string toTextLines(QStringView raw, const CodePage& page) {
  std::string text;
  text.reserve(static_cast<std::size_t>(raw.size()));
  for (const char32_t character : raw.toUcs4()) {
    if (character == QChar::ParagraphSeparator) {
      text += lineEnd;
    } else {
      text += character == QChar::LineSeparator ? '\n' : byteOf(character, page);
    }
  }
  return text;
}

QString toShownMessage(std::string_view text, const CodePage& page) {
  QString shown = toShown(text, page);
  shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  shown.replace(u'\r', u'\n');
  return shown;
}

int shownPosition(std::string_view text, std::size_t caret) {
  auto position = static_cast<int>(std::min(caret, text.size()));
  // There is no position between CR and LF; the end of the line is the nearest.
  for (auto end = text.find(lineEnd); end < caret; end = text.find(lineEnd, end + lineEnd.size())) {
    --position;
  }
  return position;
}

std::size_t textPosition(QStringView raw, int position) {
  std::size_t caret = 0;
  for (const char32_t character : raw.left(position).toUcs4()) {
    caret += character == QChar::ParagraphSeparator ? lineEnd.size() : 1;
  }
  return caret;
}

QString withoutPastedLines(const QString& before, const QString& after, int& position) {
  const auto common = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
  const qsizetype start = std::min<qsizetype>(common.second - after.begin(), position);
  constexpr QStringView lineEnds = u"\r\n\u2028\u2029";
  const auto cut = std::find_first_of(after.begin() + start, after.begin() + position,
                                      lineEnds.begin(), lineEnds.end());
  const qsizetype kept = cut - after.begin();
  if (kept == position) return after;
  QString result = after.left(kept) + after.mid(position);
  position = static_cast<int>(kept);
  return result;
}

QString toToolTip(const QString& text) {
  if (!Qt::mightBeRichText(text)) return text;
  return QStringLiteral("<p style='white-space:pre'>") + text.toHtmlEscaped() +
         QStringLiteral("</p>");
}

QString withAccessKey(const QString& caption, char key) {
  QString result = caption;
  result.replace(u'&', QStringLiteral("&&"));
  if (key == 0) return result;
  const qsizetype place = result.indexOf(QLatin1Char(key), 0, Qt::CaseInsensitive);
  if (place >= 0) result.insert(place, u'&');
  return result;
}

}  // namespace kova
