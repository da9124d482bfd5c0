// SPDX-License-Identifier: MIT
#include "desktop/option_box.h"

namespace kova {

void OptionBox::focusInEvent(QFocusEvent* event) {
  QRadioButton::focusInEvent(event);
  // The toolkit has just removed the others of the group from the Tab order.
  for (auto* button : parentWidget()->findChildren<QRadioButton*>()) {
    button->setFocusPolicy(Qt::StrongFocus);
  }
}

}  // namespace kova
