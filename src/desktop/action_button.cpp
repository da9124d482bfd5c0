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
  return sizeFor(fewestCharacters_, 2);
}

QSize ActionButton::minimumSizeHint() const {
  return sizeFor(0, 1);
}

/// The margin is in characters as well.
QSize ActionButton::sizeFor(int fewestCharacters, int margin) const {
  const QFontMetrics metrics = fontMetrics();
  const int character = metrics.averageCharWidth();
  const int caption = metrics.size(Qt::TextShowMnemonic, text()).width();
  QSize size = QPushButton::sizeHint();
  size.setWidth(std::max(caption, fewestCharacters * character) + margin * character);
  return size;
}

}  // namespace kova
