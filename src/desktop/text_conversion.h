// SPDX-License-Identifier: MIT
// The one place where the toolkit's text meets the wizard's single-byte text.
#pragma once

#include <QString>
#include <cstddef>
#include <string>
#include <string_view>

#include "platform/code_page.h"

namespace kova {

/// Text of one line, a caption or a list line as the toolkit shows it: one character a byte.
QString toShown(std::string_view text, const CodePage& page);
/// A text the other way. What the code page lacks becomes "?".
std::string toText(QStringView shown, const CodePage& page);

/// Lines as a multi-line box holds them: a line ending of CR LF stands between two blocks, a lone
/// LF is a line separator within its block.
QString toShownLines(std::string_view text, const CodePage& page);
/// The raw text of a box's document the other way.
std::string toTextLines(QStringView raw, const CodePage& page);

/// Lines as a message shows them.
QString toShownMessage(std::string_view text, const CodePage& page);

/// Position in the box's document of a caret position in `text`, where CR LF counts as two.
int shownPosition(std::string_view text, std::size_t caret);
/// Caret position in the text of a position in the raw text of a document or of a line.
std::size_t textPosition(QStringView raw, int position);

/// What a field of one line keeps of an edit that made `before` into `after`: a pasted text ends at
/// its first line ending. `position` is the place behind the edit and follows the cut.
QString withoutPastedLines(const QString& before, const QString& after, int& position);

/// A tool tip that shows `text` as it stands, markup or not.
QString toToolTip(const QString& text);

/// A caption with its access key, if it has one, in the toolkit's spelling. An "&" of the caption
/// shows as such.
QString withAccessKey(const QString& caption, char key);

}  // namespace kova
