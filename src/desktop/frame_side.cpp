// SPDX-License-Identifier: MIT
#include "desktop/frame_side.h"

#include <QEvent>
#include <QLayout>

namespace kova {

FrameSide::FrameSide(QGroupBox& frame, QWidget* parent) : QWidget(parent), frame_(frame) {
  frame.installEventFilter(this);
}

bool FrameSide::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::ContentsRectChange || event->type() == QEvent::StyleChange) align();
  return QWidget::eventFilter(watched, event);
}

void FrameSide::showEvent(QShowEvent* event) {
  align();
  QWidget::showEvent(event);
}

void FrameSide::align() {
  if (layout() == nullptr || frame_.layout() == nullptr) return;
  const QMargins outer = frame_.contentsMargins();
  const QMargins inner = frame_.layout()->contentsMargins();
  layout()->setContentsMargins(0, outer.top() + inner.top(), 0, outer.bottom() + inner.bottom());
}

}  // namespace kova
