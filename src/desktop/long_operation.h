// SPDX-License-Identifier: MIT
// Shows that a long act is under way. The act runs inside one event, so nothing but this is painted
// until it ends.
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
  /// `line` shows how far an act is; `finished` shows in it again what stood there.
  LongOperation(QLabel& line, std::function<void()> finished);

  /// So many files are done by now.
  void progress(std::size_t files);

 private:
  void end();

  QLabel& line_;
  const std::function<void()> finished_;
  QElapsedTimer sinceStart_;
  qint64 nextShown_ = 0;  // milliseconds since the start
  QTimer afterAction_;
  std::optional<QScopeGuard<void (*)()>> busyCursor_;  ///< while the act is shown
};

}  // namespace kova
