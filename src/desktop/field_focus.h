// SPDX-License-Identifier: MIT
// Tracks which text field has the input focus, as the wizard sees it. Switching windows and opening
// or closing a message box or menu do not count as focus changes.
#pragma once

#include <QWidget>
#include <map>

#include "controls/controls.h"

namespace kova {

class FieldFocus : public QObject {
 public:
  using QObject::QObject;

  /// Tracks the focus of `widget`, which shows `field`, or null if it is not a text field.
  void watch(QWidget& widget, TextField* field);
  bool eventFilter(QObject* watched, QEvent* event) override;
  /// While held, focus changes run no handler: the wizard makes them, not the engineer.
  void hold(bool held) { held_ = held; }

 private:
  void enter(const QWidget* widget);

  std::map<const QWidget*, TextField*> fields_;
  TextField* entered_ = nullptr;
  bool held_ = false;
};

}  // namespace kova
