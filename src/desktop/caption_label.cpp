// SPDX-License-Identifier: MIT
#include "desktop/caption_label.h"

#include <QMouseEvent>
#include <algorithm>

namespace kova {

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

}  // namespace kova
