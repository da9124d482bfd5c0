// SPDX-License-Identifier: MIT
// A button hardly wider than its caption: with the style's minimum width the window would not fit
// small screens. One that ends the work fills its place, with its caption in bold.
#pragma once

#include <QPushButton>

namespace kova {

class ActionButton : public QPushButton {
 public:
  ActionButton(bool endsWork, QWidget* parent);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 private:
  QSize sizeFor(int fewestCharacters, int margin) const;

  int fewestCharacters_;
};

}  // namespace kova
