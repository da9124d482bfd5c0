// SPDX-License-Identifier: MIT
#include "desktop/act_filter.h"

#include <QShortcutEvent>
#include <QWidget>
#include <utility>

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

void onPress(QAbstractButton& button, std::function<void()> act) {
  QObject::connect(&button, &QAbstractButton::clicked, &button, [&button, act = std::move(act)] {
    if (!button.hasFocus()) button.setFocus(Qt::OtherFocusReason);
    act();
  });
}

void onToggle(QAbstractButton& button, std::function<bool()> model, std::function<void()> act) {
  QObject::connect(&button, &QAbstractButton::toggled, &button,
                   [&button, model = std::move(model), act = std::move(act)](bool on) {
                     // Of two options the one that takes over tells of it.
                     if (on == model() || (button.autoExclusive() && !on)) return;
                     if (!button.hasFocus()) button.setFocus(Qt::OtherFocusReason);
                     act();
                   });
}

bool EndOfActs::eventFilter(QObject* watched, QEvent* event) {
  const bool act =
      event->isInputEvent() || event->type() == QEvent::Shortcut || event->type() == QEvent::Close;
  return act || QObject::eventFilter(watched, event);
}

}  // namespace kova
