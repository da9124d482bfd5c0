// SPDX-License-Identifier: MIT
// Colours that the toolkit's palettes lack, made from those that they have.
#pragma once

#include <QPalette>

namespace kova {

/// `palette`, in which a disabled text and a hint in an empty field are paler than other texts and
/// still readable: at a contrast of 4.5 or more, unless that of the other texts is less.
QPalette withReadableTexts(QPalette palette);

/// A background with a touch of `colour`, on which texts stay readable.
QColor tinted(const QPalette& palette, const QColor& colour);

/// Background of the line that holds the caret.
QColor currentLine(const QPalette& palette);

/// The colours of a marked field: a touch of amber, in which its text stays readable, enabled or
/// not.
QPalette markedField(const QPalette& palette);

}  // namespace kova
