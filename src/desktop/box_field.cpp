// SPDX-License-Identifier: MIT
#include "desktop/box_field.h"

#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QTextBlock>
#include <utility>

#include "desktop/colours.h"
#include "desktop/text_conversion.h"

namespace kova {

BoxField::BoxField(TextField& field, const CodePage& codePage, QWidget* parent)
    : FieldWidget(field, codePage, parent) {
  setTabChangesFocus(true);
  setFocusPolicy(Qt::StrongFocus);
  setLineWrapMode(QPlainTextEdit::NoWrap);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  connect(this, &QPlainTextEdit::textChanged, this, &BoxField::takeEdit);
  connect(this, &QPlainTextEdit::cursorPositionChanged, this, &BoxField::takeCaret);
  connect(this, &QPlainTextEdit::cursorPositionChanged, this, &BoxField::highlightLine);
  highlightLine();
}

void BoxField::refresh() {
  const QScopedValueRollback<bool> guard(refreshing_, true);
  const std::string& text = field_.text();
  if (differs_ || text != shown_) {
    shown_ = text;
    differs_ = false;
    setPlainText(toShownLines(text, codePage_));
    revision_ = document()->revision();
  }
  const int position = shownPosition(text, field_.caret());
  QTextCursor cursor = textCursor();
  if (position == cursor.position()) return;
  cursor.setPosition(position);
  setTextCursor(cursor);
}

void BoxField::takeEdit() {
  if (refreshing_) return;
  revision_ = document()->revision();
  const QString raw = document()->toRawText();
  const std::size_t caret = textPosition(raw, textCursor().position());
  shown_ = toTextLines(raw, codePage_);
  differs_ = toShownLines(shown_, codePage_) != raw;
  // The model may change the box's text while it processes this one.
  const std::string text = shown_;
  field_.edit(text, caret);
}

void BoxField::takeCaret() {
  // The toolkit reports the caret before the edit that moved it.
  if (refreshing_ || document()->revision() != revision_) return;
  field_.setCaret(textPosition(document()->toRawText(), textCursor().position()));
}

void BoxField::keyPressEvent(QKeyEvent* event) {
  // Enter ends a name, whatever modifier is held.
  if (event->matches(QKeySequence::InsertLineSeparator)) {
    textCursor().insertBlock();
  } else {
    FieldWidget::keyPressEvent(event);
  }
}

void BoxField::mousePressEvent(QMouseEvent* event) {
  const auto selected = [this] {
    return std::pair(textCursor().anchor(), textCursor().position());
  };
  const auto before = selected();
  FieldWidget::mousePressEvent(event);
  // No other press changes the selection.
  thirdClick_ =
      textCursor().hasSelection() && selected() != before && event->modifiers() == Qt::NoModifier;
  excludeLineEnding();
}

void BoxField::mouseMoveEvent(QMouseEvent* event) {
  FieldWidget::mouseMoveEvent(event);
  excludeLineEnding();
}

/// A third click selects a line with its ending. Typing over it would join it with the next line.
void BoxField::excludeLineEnding() {
  QTextCursor cursor = textCursor();
  const int start = cursor.anchor();
  if (!thirdClick_ || cursor.position() <= start || !cursor.atBlockStart()) return;
  cursor.setPosition(cursor.position() - 1);
  const int end = cursor.position();
  cursor.setPosition(start);
  cursor.setPosition(end, QTextCursor::KeepAnchor);
  setTextCursor(cursor);
}

void BoxField::highlightLine() {
  QTextEdit::ExtraSelection line;
  line.cursor = textCursor();
  line.cursor.clearSelection();
  line.format.setBackground(currentLine(palette()));
  line.format.setProperty(QTextFormat::FullWidthSelection, true);
  setExtraSelections({line});
}

void BoxField::changeEvent(QEvent* event) {
  FieldWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) highlightLine();
}

QSize BoxField::sizeOf(int columns, int lines) const {
  const QMargins margins = contentsMargins();
  const int frame = 2 * frameWidth() + static_cast<int>(2 * document()->documentMargin());
  return {columns * fontMetrics().averageCharWidth() + frame + margins.left() + margins.right(),
          lines * fontMetrics().lineSpacing() + frame + margins.top() + margins.bottom()};
}

}  // namespace kova
