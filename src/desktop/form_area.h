// SPDX-License-Identifier: MIT
// Scrolls the form where the screen is too small for it, and asks for its full size.
#pragma once

#include <QScrollArea>

namespace kova {

class FormArea : public QScrollArea {
 public:
  explicit FormArea(QWidget* parent);
  QSize sizeHint() const override;
};

}  // namespace kova
