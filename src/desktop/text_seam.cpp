// SPDX-License-Identifier: MIT
#include "desktop/text_seam.h"

#include <QTextDocument>
#include <algorithm>

namespace kova {
namespace {

constexpr std::string_view lineEnd = "\r\n";

QString toUnicode(std::string_view text, const CodePage& page) {
  QString shown;
  shown.reserve(static_cast<qsizetype>(text.size()));
  for (const char byte : text) shown.append(QChar::fromUcs4(page.character(byte)));
  return shown;
}

/// Most characters have the same number in the code page, which spares the search.
char byteOf(char32_t character, const CodePage& page) {
  const char same = static_cast<char>(static_cast<unsigned char>(character));
  return page.character(same) == character ? same : page.byte(character);
}

/// Calls `visit` with each character and the place behind it.
template <class Visit>
void eachCharacter(QStringView shown, Visit visit) {
  for (qsizetype i = 0; i < shown.size(); ++i) {
    char32_t character = shown[i].unicode();
    if (shown[i].isHighSurrogate() && i + 1 < shown.size() && shown[i + 1].isLowSurrogate()) {
      character = QChar::surrogateToUcs4(shown[i], shown[i + 1]);
      ++i;
    }
    visit(character, i + 1);
  }
}

bool isLineEnd(QChar character) {
  return character == u'\r' || character == u'\n' || character == QChar::LineSeparator ||
         character == QChar::ParagraphSeparator;
}

}  // namespace

QString toShown(std::string_view text, const CodePage& page) {
  return toUnicode(text, page);
}

std::string toText(QStringView shown, const CodePage& page) {
  std::string text;
  text.reserve(static_cast<std::size_t>(shown.size()));
  eachCharacter(shown, [&](char32_t character, qsizetype) { text += byteOf(character, page); });
  return text;
}

QString toShownLines(std::string_view text, const CodePage& page) {
  QString shown = toUnicode(text, page);
  shown.replace(QStringLiteral("\r\n"), QString(QChar::ParagraphSeparator));
  shown.replace(u'\n', QChar::LineSeparator);
  return shown;
}

std::string toTextLines(QStringView raw, const CodePage& page) {
  std::string text;
  text.reserve(static_cast<std::size_t>(raw.size()));
  eachCharacter(raw, [&](char32_t character, qsizetype) {
    if (character == QChar::ParagraphSeparator) {
      text += lineEnd;
    } else {
      text += character == QChar::LineSeparator ? '\n' : byteOf(character, page);
    }
  });
  return text;
}

QString toShownMessage(std::string_view text, const CodePage& page) {
  QString shown = toUnicode(text, page);
  shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  shown.replace(u'\r', u'\n');
  return shown;
}

int shownPosition(std::string_view text, std::size_t caret) {
  const std::string_view ahead = text.substr(0, caret);
  auto position = static_cast<int>(ahead.size());
  for (auto end = ahead.find(lineEnd); end != std::string_view::npos;
       end = ahead.find(lineEnd, end + lineEnd.size())) {
    --position;
  }
  // Between CR and LF there is no place; the end of the line is the nearest.
  const bool insideLineEnd = caret > 0 && caret < text.size() && text[caret - 1] == lineEnd[0] &&
                             text[caret] == lineEnd[1];
  return insideLineEnd ? position - 1 : position;
}

std::size_t textPosition(QStringView raw, int position) {
  std::size_t caret = 0;
  eachCharacter(raw.left(position), [&](char32_t character, qsizetype) {
    caret += character == QChar::ParagraphSeparator ? lineEnd.size() : 1;
  });
  return caret;
}

QString withoutPastedLines(const QString& before, const QString& after, int& position) {
  const auto common = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
  const qsizetype start = std::min<qsizetype>(common.second - after.begin(), position);
  const auto cut = std::find_if(after.begin() + start, after.begin() + position, isLineEnd);
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
