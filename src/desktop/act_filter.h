// SPDX-License-Identifier: MIT
// Acts of the engineer that the toolkit would carry out differently.
#pragma once

#include <QAbstractButton>
#include <QObject>
#include <functional>

namespace kova {

/// An access key presses its button at once, where the toolkit would wait for a moment and let
/// further keys overtake it; the wheel turns nothing that does not have the focus.
class ActFilter : public QObject {
 public:
  using QObject::QObject;
  bool eventFilter(QObject* watched, QEvent* event) override;
};

/// Runs `act` when the engineer presses `button`, however that is done. The button has the focus
/// then, so that the field that had it has been left before.
void onPress(QAbstractButton& button, std::function<void()> act);

/// Runs `act` when `button` shows something else than the model holds: a screen reader toggles it
/// without a press.
void onToggle(QAbstractButton& button, std::function<bool()> model, std::function<void()> act);

/// Keeps the engineer's acts from all windows once the program has ended.
class EndOfActs : public QObject {
 public:
  using QObject::QObject;
  bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace kova
