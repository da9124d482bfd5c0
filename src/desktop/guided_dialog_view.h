// SPDX-License-Identifier: MIT
// The guided dialog on screen: a window next to the main window.
#pragma once

#include <QDialog>
#include <QPushButton>

#include "desktop/form_widgets.h"
#include "identity/export_helper.h"

namespace kova {

class GuidedDialogView : public QDialog {
 public:
  /// Appears in the middle of `mainWindow`, and stays open when that one is closed.
  GuidedDialogView(ExportHelper& helper, const CodePage& codePage, QWidget& mainWindow);

  /// Called for the Escape key and the window's close control.
  void reject() override { helper_.window.unload(); }
  bool eventFilter(QObject* watched, QEvent* event) override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void markDefault();
  void refresh();
  void bringToFront();

  ExportHelper& helper_;
  const CodePage& codePage_;
  QWidget& mainWindow_;
  QPushButton* default_ = nullptr;
  FormWidgets widgets_;
  Connections connections_;
};

}  // namespace kova
