// SPDX-License-Identifier: MIT
// Tells one user action from the next. An action ends when the program waits for the next event, or
// when the next key or button arrives. What runs in a message box belongs to the action that opened
// it.
#pragma once

#include <QObject>
#include <QPointer>
#include <functional>

namespace kova {

class SessionRecorder : public QObject {
 public:
  /// `ended` runs between two actions. Its argument is the same number for keys that were typed
  /// into one field without leaving it, and 0 for any other action.
  explicit SessionRecorder(std::function<void(std::size_t typing)> ended);

  bool eventFilter(QObject* watched, QEvent* event) override;
  /// Ends the current action now, unless it is still running in a message box. False if it is.
  bool endAction();

 private:
  std::function<void(std::size_t)> ended_;
  QPointer<QWidget> typedInto_;
  std::size_t typing_ = 0;  ///< number of the run of keys
  bool keys_ = false;       ///< the current action is one of them
  bool mayHaveChanged_ = true;
};

}  // namespace kova
