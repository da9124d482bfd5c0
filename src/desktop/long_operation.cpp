// SPDX-License-Identifier: MIT
#include "desktop/long_operation.h"

#include <QApplication>
#include <utility>

namespace kova {
namespace {

constexpr qint64 patience = 300;  // milliseconds
// On a slow display a repaint takes longer than the copy of a file.
constexpr qint64 pause = 100;  // milliseconds

}  // namespace

LongOperation::LongOperation(QLabel& line, std::function<void()> finished)
    : line_(line), finished_(std::move(finished)) {
  afterAction_.setSingleShot(true);
  connect(&afterAction_, &QTimer::timeout, this, &LongOperation::end);
}

void LongOperation::progress(std::size_t files) {
  if (!afterAction_.isActive()) {
    // It fires when the handler that runs now is through.
    afterAction_.start(0);
    sinceStart_.start();
    nextShown_ = patience;
  }
  if (sinceStart_.elapsed() < nextShown_) return;
  nextShown_ = sinceStart_.elapsed() + pause;
  if (!busyCursor_) {
    QApplication::setOverrideCursor(Qt::BusyCursor);
    busyCursor_.emplace(&QApplication::restoreOverrideCursor);
  }
  line_.setText(QStringLiteral("%1 files done ...").arg(files));
  line_.repaint();
}

void LongOperation::end() {
  if (!busyCursor_) return;
  busyCursor_.reset();
  finished_();
}

}  // namespace kova
