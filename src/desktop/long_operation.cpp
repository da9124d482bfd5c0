// SPDX-License-Identifier: MIT
#include "desktop/long_operation.h"

#include <QApplication>
#include <utility>

namespace kova {
namespace {

constexpr qint64 delay = 300;  // milliseconds
// On a slow display a repaint takes longer than copying a file.
constexpr qint64 pause = 100;  // milliseconds

}  // namespace

LongOperation::LongOperation(QLabel& line, std::function<void()> finished)
    : line_(line), finished_(std::move(finished)) {
  afterEvent_.setSingleShot(true);
  connect(&afterEvent_, &QTimer::timeout, this, &LongOperation::end);
}

void LongOperation::progress(std::size_t files) {
  if (!afterEvent_.isActive()) {
    // Fires after the current handler.
    afterEvent_.start(0);
    sinceStart_.start();
    nextShown_ = delay;
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
