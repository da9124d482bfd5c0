// SPDX-License-Identifier: MIT
// A text field of several lines on screen.
#pragma once

#include <QPlainTextEdit>
#include <string>

#include "desktop/field_widget.h"

namespace kova {

class BoxField : public FieldWidget<QPlainTextEdit> {
 public:
  BoxField(TextField& field, const CodePage& codePage, QWidget* parent);

  /// Shows the model's text and caret.
  void refresh();

  QSize sizeHint() const override { return sizeOf(32, 7); }
  QSize minimumSizeHint() const override { return sizeOf(16, 3); }

 protected:
  void takeCaret() override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void takeEdit();
  void lightLine();
  void leaveOutLineEnd();
  /// With room for so many characters and lines.
  QSize sizeOf(int columns, int lines) const;

  std::string shown_;        ///< the text of the model that stands in the box
  int revision_ = 0;         ///< of the document as the model knows it
  bool thirdClick_ = false;  ///< is what the mouse is doing
  bool differs_ = false;     ///< the box holds something that the model's text can't hold
};

}  // namespace kova
