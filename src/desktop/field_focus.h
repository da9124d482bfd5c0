// SPDX-License-Identifier: MIT
// Which text field of a window has the input focus as the wizard sees it: switching windows, a
// message box or a menu that opens or closes is neither an entry nor a leaving.
#pragma once

#include <QWidget>
#include <map>

#include "controls/controls.h"

namespace kova {

class FieldFocus : public QObject {
 public:
  using QObject::QObject;

  /// Follows the focus in and out of `widget`, which shows `field`, or null if it is no text field.
  void watch(QWidget& widget, TextField* field);
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void enter(const QWidget* widget);

  std::map<const QWidget*, TextField*> fields_;
  TextField* entered_ = nullptr;
};

}  // namespace kova
