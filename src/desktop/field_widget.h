// SPDX-License-Identifier: MIT
// What fields of one and of several lines have in common: what of the engineer's clicks and keys
// reaches the model.
#pragma once

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <utility>

#include "controls/controls.h"
#include "platform/code_page.h"

namespace kova {

/// A toolkit's text widget that mirrors a text field.
template <class Edit>
class FieldWidget : public Edit {
 public:
  FieldWidget(TextField& field, const CodePage& codePage, QWidget* parent)
      : Edit(parent), field_(field), codePage_(codePage) {}

 protected:
  /// The caret of the widget becomes that of the model.
  virtual void takeCaret() = 0;

  /// An access key that leads nowhere at the moment is no text.
  void keyPressEvent(QKeyEvent* event) override {
    const Qt::KeyboardModifiers held = event->modifiers();
    const bool withAlt = (held & Qt::AltModifier) && !(held & Qt::ControlModifier);
    if (withAlt && !event->text().isEmpty() && event->text().front().isPrint()) {
      event->ignore();
    } else {
      Edit::keyPressEvent(event);
    }
  }

  void mouseDoubleClickEvent(QMouseEvent* event) override {
    if (event->button() == Qt::LeftButton) endsDoubleClick_ = true;
    Edit::mouseDoubleClickEvent(event);
  }

  void mouseReleaseEvent(QMouseEvent* event) override {
    Edit::mouseReleaseEvent(event);
    if (event->button() != Qt::LeftButton || std::exchange(endsDoubleClick_, false)) return;
    if (!this->rect().contains(event->position().toPoint())) return;
    // The toolkit selects a whole text without a word on the caret.
    takeCaret();
    field_.click();
  }

  /// The menu key opens the window's menu; with Shift and F10 the field's own menu comes up.
  void contextMenuEvent(QContextMenuEvent* event) override {
    if (event->reason() == QContextMenuEvent::Keyboard && event->modifiers() == Qt::NoModifier) {
      event->ignore();
    } else {
      Edit::contextMenuEvent(event);
    }
  }

  TextField& field_;
  const CodePage& codePage_;
  bool refreshing_ = false;  ///< what changes in the widget comes from the model

 private:
  bool endsDoubleClick_ = false;
};

}  // namespace kova
