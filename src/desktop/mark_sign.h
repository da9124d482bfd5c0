// SPDX-License-Identifier: MIT
// A sign at the right edge of a marked field, for people who can't see its colour.
#pragma once

#include <QWidget>

namespace kova {

class MarkSign : public QWidget {
 public:
  /// A child of `field`, which makes room for it while it is shown.
  explicit MarkSign(QWidget& field);
  void setVisible(bool visible) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void place();
};

}  // namespace kova
