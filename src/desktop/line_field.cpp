// SPDX-License-Identifier: MIT
#include "desktop/line_field.h"

#include <QKeyEvent>
#include <QScopedValueRollback>
#include <algorithm>
#include <iterator>
#include <limits>

#include "desktop/text_conversion.h"

namespace kova {
namespace {

// The toolkit's size hint is for this number of characters "x".
constexpr int toolkitCharacters = 17;

}  // namespace

LineField::LineField(TextField& field, const CodePage& codePage, Characters characters,
                     QWidget* parent)
    : FieldWidget(field, codePage, parent), characters_(characters) {
  setMaxLength(std::numeric_limits<int>::max());
  connect(this, &QLineEdit::textChanged, this, &LineField::takeEdit);
  connect(this, &QLineEdit::cursorPositionChanged, this, &LineField::takeCaret);
}

void LineField::refresh() {
  const QScopedValueRollback<bool> guard(refreshing_, true);
  if (const QString shown = toShown(field_.text(), codePage_); shown != text()) setText(shown);
  before_ = text();
  const int caret = static_cast<int>(field_.caret());
  if (caret != cursorPosition()) setCursorPosition(caret);
}

void LineField::forgetEdits() {
  const QScopedValueRollback<bool> guard(refreshing_, true);
  const int caret = cursorPosition();
  setText(text());
  setCursorPosition(caret);
}

void LineField::takeEdit(const QString& edited) {
  if (refreshing_) return;
  int position = cursorPosition();
  const QString kept = withoutPastedLines(before_, edited, position);
  const std::size_t caret = textPosition(kept, position);
  const std::string text = toText(kept, codePage_);
  if (const QString shown = toShown(text, codePage_); shown != edited) replaceEdit(shown);
  field_.edit(text, caret);
}

/// Replaces an edit with what the model keeps of it, as an edit of its own: setting the text would
/// clear Undo and Redo.
void LineField::replaceEdit(const QString& kept) {
  if (!isUndoAvailable()) return;
  const QScopedValueRollback<bool> guard(refreshing_, true);
  undo();
  const QString former = text();
  const auto [from, in] = std::mismatch(former.begin(), former.end(), kept.begin(), kept.end());
  const auto start = static_cast<int>(from - former.begin());
  const auto after = std::mismatch(former.rbegin(), std::make_reverse_iterator(from), kept.rbegin(),
                                   std::make_reverse_iterator(in));
  const auto end = static_cast<int>(former.size() - (after.first - former.rbegin()));
  const auto added = (after.second.base() - in);
  setSelection(start, end - start);
  insert(kept.mid(start, added));
}

void LineField::takeCaret() {
  // For input methods, Undo and Redo, the toolkit reports the caret before the edit.
  if (refreshing_ || text() != before_) return;
  field_.setCaret(textPosition(text(), cursorPosition()));
}

void LineField::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    event->accept();
    field_.keyDown(TextField::enterKey);
  } else {
    FieldWidget::keyPressEvent(event);
  }
}

QSize LineField::sizeFor(int characters) const {
  QSize size = QLineEdit::sizeHint();
  const QFontMetrics metrics = fontMetrics();
  const int mark = textMargins().left() + textMargins().right();
  const int frame = size.width() - mark - toolkitCharacters * metrics.horizontalAdvance(u'x');
  size.setWidth(frame +
                characters * std::max(metrics.horizontalAdvance(u'0'), metrics.averageCharWidth()));
  return size;
}

}  // namespace kova
