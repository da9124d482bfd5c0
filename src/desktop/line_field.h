// SPDX-License-Identifier: MIT
// A single-line text field on screen.
#pragma once

#include <QLineEdit>

#include "desktop/field_widget.h"

namespace kova {

class LineField : public FieldWidget<QLineEdit> {
 public:
  /// Width in characters.
  struct Characters {
    int wanted = 0;
    int least = 0;  ///< on a small screen
  };
  LineField(TextField& field, const CodePage& codePage, Characters characters, QWidget* parent);

  /// Shows the model's text and caret.
  void refresh();
  /// Empties the field's own undo.
  void forgetEdits();

  QSize sizeHint() const override { return sizeFor(characters_.wanted); }
  QSize minimumSizeHint() const override { return sizeFor(characters_.least); }

 protected:
  void takeCaret() override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void takeEdit(const QString& edited);
  void replaceEdit(const QString& kept);
  QSize sizeFor(int characters) const;

  Characters characters_;
  QString before_;  ///< the text that the model last knew
};

}  // namespace kova
