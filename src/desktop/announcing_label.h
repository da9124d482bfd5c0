// SPDX-License-Identifier: MIT
// A text that a screen reader speaks whenever it changes, wherever the focus is.
#pragma once

#include <QLabel>

namespace kova {

class AnnouncingLabel : public QLabel {
 public:
  explicit AnnouncingLabel(QWidget* parent);
  /// At least two lines, so that a long message does not move the widgets above.
  int heightForWidth(int width) const override;

  /// Shows `message`, and has it spoken if it has changed.
  void announce(const QString& message);
  /// Has the message spoken again, after `what`, which does not show.
  void speak(const QString& what = {});
};

}  // namespace kova
