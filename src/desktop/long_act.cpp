// SPDX-License-Identifier: MIT
#include "desktop/long_act.h"

#include <QApplication>
#include <utility>

namespace kova {
namespace {

constexpr qint64 patience = 300;  // milliseconds
// On a slow display a repaint takes longer than the copy of a file.
constexpr qint64 pause = 100;  // milliseconds

}  // namespace

LongAct::LongAct(QLabel& line, std::function<void()> finished)
    : line_(line), finished_(std::move(finished)) {
  afterAct_.setSingleShot(true);
  connect(&afterAct_, &QTimer::timeout, this, &LongAct::end);
}

LongAct::~LongAct() {
  if (shown_) QApplication::restoreOverrideCursor();
}

void LongAct::progress(std::size_t files) {
  if (!afterAct_.isActive()) {
    // It fires when the handler that runs now is through.
    afterAct_.start(0);
    sinceStart_.start();
    nextShown_ = patience;
  }
  if (sinceStart_.elapsed() < nextShown_) return;
  nextShown_ = sinceStart_.elapsed() + pause;
  if (!std::exchange(shown_, true)) QApplication::setOverrideCursor(Qt::BusyCursor);
  line_.setText(QStringLiteral("%1 files done ...").arg(files));
  line_.repaint();
}

void LongAct::end() {
  if (!std::exchange(shown_, false)) return;
  QApplication::restoreOverrideCursor();
  finished_();
}

}  // namespace kova
