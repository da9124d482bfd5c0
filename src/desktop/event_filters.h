// SPDX-License-Identifier: MIT
// Filters for input that the toolkit would handle differently.
#pragma once

#include <QObject>

class QKeyEvent;

namespace kova {

/// Lets an access key press its button at once, where the toolkit would wait and let further keys
/// overtake it. The wheel changes only the control that has the focus.
class ControlInputFilter : public QObject {
 public:
  using QObject::QObject;
  bool eventFilter(QObject* watched, QEvent* event) override;
};

/// A held key presses a control once, in all windows. Keys that move or type still repeat.
class KeyRepeatFilter : public QObject {
 public:
  /// With `inPairs`, a repeat is a release and a press with the same time, as an X server sends it.
  /// Under load the toolkit mistakes such a press for a new one.
  explicit KeyRepeatFilter(bool inPairs);
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool isRepeat(const QKeyEvent& press) const;
  bool markRepeat(QObject& window, QKeyEvent& press) const;

  bool inPairs_;
  bool shortcutRepeats_ = false;
  int releasedKey_ = 0;
  quint64 releasedAt_ = 0;
};

/// Blocks user input in all windows once the program has ended.
class InputBlocker : public QObject {
 public:
  using QObject::QObject;
  bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace kova
