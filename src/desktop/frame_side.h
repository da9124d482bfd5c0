// SPDX-License-Identifier: MIT
// Holds the labels next to a frame, with its inner edges level with those of the frame.
#pragma once

#include <QGroupBox>

namespace kova {

class FrameSide : public QWidget {
 public:
  FrameSide(QGroupBox& frame, QWidget* parent);
  bool eventFilter(QObject* watched, QEvent* event) override;

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void align();

  QGroupBox& frame_;
};

}  // namespace kova
