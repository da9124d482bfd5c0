// SPDX-License-Identifier: MIT
#include "desktop/act_filter.h"

#include <QAbstractButton>
#include <QPlainTextEdit>
#include <QShortcutEvent>

namespace kova {
namespace {

/// Enter goes on and on in a text of several lines alone.
bool isHeldEnter(const QObject* watched, const QEvent* event) {
  if (event->type() != QEvent::KeyPress) return false;
  const auto* key = static_cast<const QKeyEvent*>(event);
  const bool enter = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
  return enter && key->isAutoRepeat() && qobject_cast<const QPlainTextEdit*>(watched) == nullptr;
}

}  // namespace

bool ActFilter::eventFilter(QObject* watched, QEvent* event) {
  if (isHeldEnter(watched, event)) return true;
  if (event->type() == QEvent::Shortcut && !static_cast<QShortcutEvent*>(event)->isAmbiguous()) {
    if (auto* button = qobject_cast<QAbstractButton*>(watched)) {
      button->setShortcutAutoRepeat(static_cast<QShortcutEvent*>(event)->shortcutId(), false);
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
