// SPDX-License-Identifier: MIT
// What single-line and multi-line fields share: which clicks and keys reach the model.
#pragma once

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <utility>

#include "controls/controls.h"
#include "platform/code_page.h"

namespace kova {

/// A text widget that shows a text field of the model.
template <class Edit>
class FieldWidget : public Edit {
 public:
  FieldWidget(TextField& field, const CodePage& codePage, QWidget* parent)
      : Edit(parent), field_(field), codePage_(codePage) {}

 protected:
  /// Passes the widget's caret to the model.
  virtual void takeCaret() = 0;

  /// An access key without a target must not be typed as text.
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
    // When it selects all, the toolkit does not report the caret.
    takeCaret();
    field_.click();
  }

  /// The Menu key opens the window's menu, Shift+F10 the field's own.
  void contextMenuEvent(QContextMenuEvent* event) override {
    if (event->reason() == QContextMenuEvent::Keyboard && event->modifiers() == Qt::NoModifier) {
      event->ignore();
    } else {
      Edit::contextMenuEvent(event);
    }
  }

  TextField& field_;
  const CodePage& codePage_;
  bool refreshing_ = false;  ///< the model is changing the widget

 private:
  bool endsDoubleClick_ = false;
};

}  // namespace kova
