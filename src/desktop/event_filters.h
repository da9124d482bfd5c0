// SPDX-License-Identifier: MIT
// Acts of the engineer that the toolkit would carry out differently.
#pragma once

#include <QObject>

class QKeyEvent;

namespace kova {

/// An access key presses its button at once, where the toolkit would wait for a moment and let
/// further keys overtake it; the wheel turns nothing that does not have the focus.
class AccessKeyFilter : public QObject {
 public:
  using QObject::QObject;
  bool eventFilter(QObject* watched, QEvent* event) override;
};

/// A held key is one press of whatever it presses, in all windows; what moves or types repeats.
class HeldKeys : public QObject {
 public:
  /// With `inPairs` each repeat of a held key is a release and a press of the same time, as an X
  /// server sends them. Under load the toolkit takes such a press for a new one.
  explicit HeldKeys(bool inPairs);
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool isRepeat(const QKeyEvent& press) const;
  bool markRepeat(QObject& window, QKeyEvent& press) const;

  bool inPairs_;
  bool shortcutRepeats_ = false;
  int releasedKey_ = 0;
  quint64 releasedAt_ = 0;
};

/// Keeps the engineer's acts from all windows once the program has ended.
class InputBlocker : public QObject {
 public:
  using QObject::QObject;
  bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace kova
