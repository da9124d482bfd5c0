// SPDX-License-Identifier: MIT
// A multi-line text field on screen.
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
  /// Empties the field's own undo.
  void forgetEdits() { document()->clearUndoRedoStacks(); }

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
  void highlightLine();
  void excludeLineEnding();
  /// Size for this number of characters and lines.
  QSize sizeOf(int columns, int lines) const;

  std::string shown_;        ///< the model's text that the box shows
  int revision_ = 0;         ///< of the document that the model knows
  bool thirdClick_ = false;  ///< the mouse selects a line
  bool differs_ = false;     ///< the box has characters that the model's text can't have
};

}  // namespace kova
