// SPDX-License-Identifier: MIT
// A frame that reports mouse presses on itself, but not on the widgets in it.
#pragma once

#include <QGroupBox>

#include "controls/controls.h"

namespace kova {

class FrameBox : public QGroupBox {
 public:
  FrameBox(Frame& frame, QWidget* parent) : QGroupBox(parent), frame_(frame) {}

 protected:
  void mousePressEvent(QMouseEvent* event) override;

 private:
  Frame& frame_;
};

}  // namespace kova
