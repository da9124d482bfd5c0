// SPDX-License-Identifier: MIT
// Acts of the engineer that the toolkit would carry out differently.
#pragma once

#include <QObject>

namespace kova {

/// An access key presses its button at once, where the toolkit would wait for a moment and let
/// further keys overtake it; a held key is one act; the wheel turns nothing that does not have the
/// focus.
class ActFilter : public QObject {
 public:
  using QObject::QObject;
  bool eventFilter(QObject* watched, QEvent* event) override;
};

/// Keeps the engineer's acts from all windows once the program has ended.
class EndOfActs : public QObject {
 public:
  using QObject::QObject;
  bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace kova
