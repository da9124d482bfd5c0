// SPDX-License-Identifier: MIT
// Colours that the toolkit's palettes lack, derived from those that they have.
#pragma once

#include <QPalette>

namespace kova {

/// `palette` with disabled texts and hints in empty fields that are paler than other texts but
/// readable: at a contrast of 4.5 or more, unless other texts have less.
QPalette withReadableTexts(QPalette palette);

/// A background tinted with `colour`, on which texts stay readable.
QColor tinted(const QPalette& palette, const QColor& colour);

/// Background of the line with the caret.
QColor currentLine(const QPalette& palette);

/// The colours of a marked field: an amber tint, with readable text also if it is disabled.
QPalette markedField(const QPalette& palette);

}  // namespace kova
