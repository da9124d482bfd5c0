// SPDX-License-Identifier: MIT
// What fields of one and of several lines have in common: how the engineer's clicks and the input
// focus reach the model.
#pragma once

#include <QContextMenuEvent>
#include <QFocusEvent>
#include <QMouseEvent>
#include <utility>

#include "controls/controls.h"
#include "platform/code_page.h"

namespace kova {

/// The focus comes and goes between two fields. Switching windows, a message box or a menu that
/// opens or closes is neither an entry nor a leaving.
inline bool movesBetweenFields(Qt::FocusReason reason) {
  return reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason &&
         reason != Qt::MenuBarFocusReason;
}

/// A toolkit's text widget that mirrors a text field.
template <class Edit>
class FieldWidget : public Edit {
 public:
  FieldWidget(TextField& field, const CodePage& codePage, QWidget* parent)
      : Edit(parent), field_(field), codePage_(codePage) {}

 protected:
  void focusInEvent(QFocusEvent* event) override {
    Edit::focusInEvent(event);
    if (movesBetweenFields(event->reason())) field_.gotFocus();
  }

  void focusOutEvent(QFocusEvent* event) override {
    Edit::focusOutEvent(event);
    if (movesBetweenFields(event->reason())) field_.lostFocus();
  }

  void mouseDoubleClickEvent(QMouseEvent* event) override {
    endsDoubleClick_ = true;
    Edit::mouseDoubleClickEvent(event);
  }

  void mouseReleaseEvent(QMouseEvent* event) override {
    Edit::mouseReleaseEvent(event);
    if (event->button() != Qt::LeftButton || std::exchange(endsDoubleClick_, false)) return;
    if (this->rect().contains(event->position().toPoint())) field_.click();
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
  bool mirroring_ = false;  ///< what changes in the widget comes from the model

 private:
  bool endsDoubleClick_ = false;
};

}  // namespace kova
