// SPDX-License-Identifier: MIT
#include "desktop/small_widgets.h"

#include <QLayout>
#include <QMouseEvent>
#include <QStyle>
#include <algorithm>

namespace kova {

void FrameBox::mousePressEvent(QMouseEvent* event) {
  QGroupBox::mousePressEvent(event);
  if (childAt(event->position().toPoint()) != nullptr) return;
  if (event->button() == Qt::LeftButton) frame_.mouseDown(Frame::leftButton);
  if (event->button() == Qt::RightButton) frame_.mouseDown(Frame::rightButton);
}

CaptionLabel::CaptionLabel(Label& label, int lines, QWidget* parent)
    : QLabel(parent), label_(label), lines_(lines) {
  setTextFormat(Qt::PlainText);
  setWordWrap(lines > 1);
  setAlignment(Qt::AlignLeft | Qt::AlignTop);
}

void CaptionLabel::leadTo(QWidget& field) {
  setBuddy(&field);
  setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

QSize CaptionLabel::withRoom(QSize size) const {
  int height = lines_ * fontMetrics().lineSpacing();
  if (buddy() != nullptr) height = std::max(height, buddy()->sizeHint().height());
  return size.expandedTo({0, height});
}

void CaptionLabel::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint())) {
    label_.click();
  }
}

ActionButton::ActionButton(bool endsWork, QWidget* parent)
    : QPushButton(parent), fewestCharacters_(endsWork ? 11 : 7) {
  setAutoDefault(true);
  if (!endsWork) return;
  QFont heavy;
  heavy.setBold(true);
  setFont(heavy);
  setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Minimum);
}

QSize ActionButton::sizeHint() const {
  const QFontMetrics metrics = fontMetrics();
  const int character = metrics.averageCharWidth();
  const int caption = metrics.size(Qt::TextShowMnemonic, text()).width();
  QSize size = QPushButton::sizeHint();
  size.setWidth(std::max(caption, fewestCharacters_ * character) + 2 * character);
  return size;
}

void OptionBox::focusInEvent(QFocusEvent* event) {
  QRadioButton::focusInEvent(event);
  // The toolkit has just taken all others of the group out of the Tab order.
  for (auto* button : parentWidget()->findChildren<QRadioButton*>()) {
    button->setFocusPolicy(Qt::StrongFocus);
  }
}

BesideFrame::BesideFrame(QGroupBox& frame, QWidget* parent) : QWidget(parent), frame_(frame) {
  frame.installEventFilter(this);
}

bool BesideFrame::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::ContentsRectChange || event->type() == QEvent::StyleChange) align();
  return QWidget::eventFilter(watched, event);
}

void BesideFrame::showEvent(QShowEvent* event) {
  align();
  QWidget::showEvent(event);
}

void BesideFrame::align() {
  if (layout() == nullptr || frame_.layout() == nullptr) return;
  const QMargins outer = frame_.contentsMargins();
  const QMargins inner = frame_.layout()->contentsMargins();
  layout()->setContentsMargins(0, outer.top() + inner.top(), 0, outer.bottom() + inner.bottom());
}

FormArea::FormArea(QWidget* parent) : QScrollArea(parent) {
  setWidgetResizable(true);
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::NoFocus);
}

QSize FormArea::sizeHint() const {
  return widget() == nullptr ? QScrollArea::sizeHint() : widget()->sizeHint();
}

}  // namespace kova
