// SPDX-License-Identifier: MIT
// An option button that the Tab key reaches whether it is selected or not.
#pragma once

#include <QRadioButton>

namespace kova {

class OptionBox : public QRadioButton {
 public:
  using QRadioButton::QRadioButton;

 protected:
  void focusInEvent(QFocusEvent* event) override;
};

}  // namespace kova
