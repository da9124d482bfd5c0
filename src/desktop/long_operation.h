// SPDX-License-Identifier: MIT
// Shows the progress of a long operation. The operation runs inside one event, so nothing else is
// painted until it ends.
#pragma once

#include <QElapsedTimer>
#include <QLabel>
#include <QScopeGuard>
#include <QTimer>
#include <cstddef>
#include <functional>
#include <optional>

namespace kova {

class LongOperation : public QObject {
 public:
  /// Shows progress in `line`; `finished` restores its text.
  LongOperation(QLabel& line, std::function<void()> finished);

  /// Reports the number of files done so far.
  void progress(std::size_t files);

 private:
  void end();

  QLabel& line_;
  const std::function<void()> finished_;
  QElapsedTimer sinceStart_;
  qint64 nextShown_ = 0;  // milliseconds since the start
  QTimer afterEvent_;
  std::optional<QScopeGuard<void (*)()>> busyCursor_;  ///< while progress is shown
};

}  // namespace kova
