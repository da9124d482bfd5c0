// SPDX-License-Identifier: MIT
// A line of text that a screen reader speaks whenever it changes, wherever the focus is.
#pragma once

#include <QLabel>

namespace kova {

class AnnouncingLabel : public QLabel {
 public:
  explicit AnnouncingLabel(QWidget* parent);
  /// Room for two lines, so that what stands above stays where it is when a message is long.
  int heightForWidth(int width) const override;

  /// Shows `message`, and has it spoken if it is another one than before.
  void say(const QString& message);
};

}  // namespace kova
