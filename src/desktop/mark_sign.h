// SPDX-License-Identifier: MIT
// A small sign at the right edge of a marked field, for those who do not see its colour.
#pragma once

#include <QWidget>

namespace kova {

class MarkSign : public QWidget {
 public:
  /// Stands in `field` at once, and makes room for itself while it is shown.
  explicit MarkSign(QWidget& field);
  void setVisible(bool visible) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void place();
};

}  // namespace kova
