// SPDX-License-Identifier: MIT
#include "desktop/form_area.h"

namespace kova {

FormArea::FormArea(QWidget* parent) : QScrollArea(parent) {
  setWidgetResizable(true);
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::NoFocus);
}

QSize FormArea::sizeHint() const {
  return widget() == nullptr ? QScrollArea::sizeHint() : widget()->sizeHint();
}

}  // namespace kova
