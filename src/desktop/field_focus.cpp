// SPDX-License-Identifier: MIT
#include "desktop/field_focus.h"

#include <QAbstractScrollArea>
#include <QFocusEvent>
#include <utility>

namespace kova {
namespace {

bool movesBetweenFields(Qt::FocusReason reason) {
  return reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason &&
         reason != Qt::MenuBarFocusReason;
}

}  // namespace

void FieldFocus::watch(QWidget& widget, TextField* field) {
  if (field != nullptr) fields_.emplace(&widget, field);
  widget.installEventFilter(this);
  auto* area = qobject_cast<QAbstractScrollArea*>(&widget);
  if (area != nullptr) area->viewport()->installEventFilter(this);
}

bool FieldFocus::eventFilter(QObject* watched, QEvent* event) {
  const auto* widget = static_cast<QWidget*>(watched);
  if (event->type() == QEvent::FocusIn) {
    enter(widget);
  } else if (event->type() == QEvent::FocusOut) {
    if (movesBetweenFields(static_cast<QFocusEvent*>(event)->reason())) enter(nullptr);
  } else if (event->type() == QEvent::MouseButtonPress && !widget->isActiveWindow()) {
    // The toolkit has already moved the focus. It reports that later, as a mere window switch.
    enter(widget->window()->focusWidget());
  }
  return QObject::eventFilter(watched, event);
}

void FieldFocus::enter(const QWidget* widget) {
  const auto found = fields_.find(widget);
  TextField* field = found == fields_.end() ? nullptr : found->second;
  if (field == entered_) return;
  if (held_) {
    entered_ = field;
    return;
  }
  if (const TextField* former = std::exchange(entered_, field)) former->lostFocus();
  if (field != nullptr && field == entered_) field->gotFocus();
}

}  // namespace kova
