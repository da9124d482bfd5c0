// SPDX-License-Identifier: MIT
// Converts between the toolkit's text and the wizard's single-byte text.
#pragma once

#include <QString>
#include <cstddef>
#include <string>
#include <string_view>

#include "platform/code_page.h"

namespace kova {

/// Single-line text as the toolkit shows it: one character per byte.
QString toShown(std::string_view text, const CodePage& page);
/// The reverse. Characters that the code page lacks become "?".
std::string toText(QStringView shown, const CodePage& page);

/// Text as a multi-line box holds it: CR LF separates two blocks, a lone LF becomes a line
/// separator within its block.
QString toShownLines(std::string_view text, const CodePage& page);
/// The reverse, from the raw text of a box's document.
std::string toTextLines(QStringView raw, const CodePage& page);

/// Text as a message box shows it.
QString toShownMessage(std::string_view text, const CodePage& page);

/// Converts a caret position in `text`, where CR LF counts as two, to one in the box's document.
int shownPosition(std::string_view text, std::size_t caret);
/// Converts a position in raw text, of a document or a line, to a caret position in the text.
std::size_t textPosition(QStringView raw, int position);

/// What a single-line field keeps of an edit from `before` to `after`: pasted text is cut at its
/// first line ending. `position` is the end of the edit and moves with the cut.
QString withoutPastedLines(const QString& before, const QString& after, int& position);

/// A tool tip that shows `text` literally, even if it looks like markup.
QString toToolTip(const QString& text);

/// A caption in the toolkit's notation, with its access key if it has one and its "&" escaped.
QString withAccessKey(const QString& caption, char key);

}  // namespace kova
