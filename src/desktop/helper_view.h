// SPDX-License-Identifier: MIT
// The guided dialog on screen: a window of its own beside the main window.
#pragma once

#include <QDialog>

#include "desktop/form_widgets.h"
#include "identity/export_helper.h"

namespace kova {

class HelperView : public QDialog {
 public:
  /// Comes up in the middle of `mainWindow`, and stays when that one is closed.
  HelperView(ExportHelper& helper, const CodePage& codePage, QWidget& mainWindow);
  HelperView(const HelperView&) = delete;
  HelperView& operator=(const HelperView&) = delete;
  HelperView(HelperView&&) = delete;
  HelperView& operator=(HelperView&&) = delete;
  ~HelperView() override;

  void reject() override;

 private:
  void markDefault();
  void mirror();

  ExportHelper& helper_;
  const CodePage& codePage_;
  QWidget& mainWindow_;
  FormWidgets widgets_;
};

}  // namespace kova
