// SPDX-License-Identifier: MIT
#include "desktop/act_filter.h"

#include <QAbstractButton>
#include <QShortcutEvent>

namespace kova {

bool ActFilter::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Shortcut && !static_cast<QShortcutEvent*>(event)->isAmbiguous()) {
    if (auto* button = qobject_cast<QAbstractButton*>(watched)) {
      button->setFocus(Qt::ShortcutFocusReason);
      button->click();
      return true;
    }
  }
  if (event->type() == QEvent::Wheel && !static_cast<QWidget*>(watched)->hasFocus()) {
    event->ignore();
    return true;
  }
  return QObject::eventFilter(watched, event);
}

bool EndOfActs::eventFilter(QObject* watched, QEvent* event) {
  const bool act =
      event->isInputEvent() || event->type() == QEvent::Shortcut || event->type() == QEvent::Close;
  return act || QObject::eventFilter(watched, event);
}

}  // namespace kova
