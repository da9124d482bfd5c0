// SPDX-License-Identifier: MIT
// The guided dialog on screen: a window of its own beside the main window.
#pragma once

#include <QDialog>
#include <QPushButton>

#include "desktop/form_widgets.h"
#include "identity/export_helper.h"

namespace kova {

class GuidedDialogView : public QDialog {
 public:
  /// Comes up in the middle of `mainWindow`, and stays when that one is closed.
  GuidedDialogView(ExportHelper& helper, const CodePage& codePage, QWidget& mainWindow);

  /// The Escape key and the window's own close control.
  void reject() override { helper_.window.unload(); }
  bool eventFilter(QObject* watched, QEvent* event) override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void markDefault();
  void refresh();
  void bringUp();

  ExportHelper& helper_;
  const CodePage& codePage_;
  QWidget& mainWindow_;
  QPushButton* default_ = nullptr;
  FormWidgets widgets_;
  Connections connections_;
};

}  // namespace kova
