// SPDX-License-Identifier: MIT
#include "desktop/frame_box.h"

#include <QMouseEvent>

namespace kova {

void FrameBox::mousePressEvent(QMouseEvent* event) {
  QGroupBox::mousePressEvent(event);
  if (childAt(event->position().toPoint()) != nullptr) return;
  if (event->button() == Qt::LeftButton) frame_.mouseDown(Frame::leftButton);
  if (event->button() == Qt::RightButton) frame_.mouseDown(Frame::rightButton);
}

}  // namespace kova
