// SPDX-License-Identifier: MIT
// A label that can be clicked. It is at least as high as its field, so that labels next to a frame
// line up with the fields in it, and as high as its number of lines.
#pragma once

#include <QLabel>

#include "controls/controls.h"

namespace kova {

class CaptionLabel : public QLabel {
 public:
  CaptionLabel(Label& label, int lines, QWidget* parent);
  /// Makes `field`, next to it, the target of its access key.
  void leadTo(QWidget& field);
  QSize sizeHint() const override { return withRoom(QLabel::sizeHint()); }
  QSize minimumSizeHint() const override { return withRoom(QLabel::minimumSizeHint()); }

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  QSize withRoom(QSize size) const;

  Label& label_;
  int lines_;
};

}  // namespace kova
