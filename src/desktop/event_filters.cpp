// SPDX-License-Identifier: MIT
#include "desktop/event_filters.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QShortcutEvent>

namespace kova {
namespace {

bool isEnter(const QKeyEvent& key) {
  return key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
}

/// The key can press a control.
bool mayPress(const QKeyEvent& key) {
  return isEnter(key) || key.key() == Qt::Key_Space || key.key() == Qt::Key_Select;
}

bool isTypedInto(const QObject* widget, const QKeyEvent& key) {
  return qobject_cast<const QPlainTextEdit*>(widget) != nullptr ||
         (!isEnter(key) && qobject_cast<const QLineEdit*>(widget) != nullptr);
}

}  // namespace

bool ControlInputFilter::eventFilter(QObject* watched, QEvent* event) {
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

KeyRepeatFilter::KeyRepeatFilter(bool inPairs) : inPairs_(inPairs) {}

bool KeyRepeatFilter::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Shortcut) return shortcutRepeats_;
  const bool press = event->type() == QEvent::KeyPress;
  const bool release = event->type() == QEvent::KeyRelease;
  if (!press && !release && event->type() != QEvent::ShortcutOverride) return false;
  auto& key = *static_cast<QKeyEvent*>(event);
  if (!watched->isWindowType()) {
    return press && key.isAutoRepeat() && mayPress(key) && !isTypedInto(watched, key);
  }
  if (press) return markRepeat(*watched, key);
  if (!release) {
    shortcutRepeats_ = isRepeat(key);
    // The screen reader filter drops the times of keys, so it has to run after this one.
    QCoreApplication::instance()->installEventFilter(this);
  } else if (key.timestamp() != 0) {
    releasedKey_ = key.key();
    releasedAt_ = key.timestamp();
  }
  return false;
}

bool KeyRepeatFilter::isRepeat(const QKeyEvent& press) const {
  return press.isAutoRepeat() ||
         (inPairs_ && press.key() == releasedKey_ && press.timestamp() == releasedAt_);
}

/// Resends a repeat that the toolkit has not recognised, marked as one. False if it is not one.
bool KeyRepeatFilter::markRepeat(QObject& window, QKeyEvent& press) const {
  if (press.isAutoRepeat() || !mayPress(press) || !isRepeat(press)) return false;
  QKeyEvent repeat(press.type(), press.key(), press.modifiers(), press.nativeScanCode(),
                   press.nativeVirtualKey(), press.nativeModifiers(), press.text(), true);
  repeat.setTimestamp(press.timestamp());
  QCoreApplication::sendEvent(&window, &repeat);
  press.setAccepted(repeat.isAccepted());
  return true;
}

bool InputBlocker::eventFilter(QObject* watched, QEvent* event) {
  const bool isInput =
      event->isInputEvent() || event->type() == QEvent::Shortcut || event->type() == QEvent::Close;
  return isInput || QObject::eventFilter(watched, event);
}

}  // namespace kova
