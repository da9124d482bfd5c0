// SPDX-License-Identifier: MIT
#include "desktop/action_button.h"

#include <algorithm>

namespace kova {

ActionButton::ActionButton(bool endsWork, QWidget* parent)
    : QPushButton(parent), fewestCharacters_(endsWork ? 11 : 7) {
  setAutoDefault(true);
  if (!endsWork) return;
  QFont heavy;
  heavy.setBold(true);
  setFont(heavy);
  setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Minimum);
}

QSize ActionButton::sizeHint() const {
  const QFontMetrics metrics = fontMetrics();
  const int character = metrics.averageCharWidth();
  const int caption = metrics.size(Qt::TextShowMnemonic, text()).width();
  QSize size = QPushButton::sizeHint();
  size.setWidth(std::max(caption, fewestCharacters_ * character) + 2 * character);
  return size;
}

}  // namespace kova
