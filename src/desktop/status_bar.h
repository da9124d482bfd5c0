// SPDX-License-Identifier: MIT
// The status line with its buttons to the right of it, or below it where the window is narrow.
#pragma once

#include <QBoxLayout>
#include <QWidget>

namespace kova {

class StatusBar : public QWidget {
 public:
  explicit StatusBar(const QMargins& margins);

  void setLine(QWidget* line) { all_->insertWidget(0, line, 1); }
  void addButton(QWidget* button);

  QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  QBoxLayout* all_;
  QBoxLayout* buttons_;
};

}  // namespace kova
