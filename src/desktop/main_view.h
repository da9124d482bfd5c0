// SPDX-License-Identifier: MIT
// The main window on screen, with its menu, status line, message boxes and the guided dialog.
#pragma once

#include <QMainWindow>
#include <QMenu>
#include <QTimer>
#include <memory>
#include <string>
#include <string_view>

#include "desktop/announcing_label.h"
#include "desktop/event_filters.h"
#include "desktop/field_marks.h"
#include "desktop/form_area.h"
#include "desktop/form_widgets.h"
#include "desktop/guided_dialog_view.h"
#include "desktop/long_operation.h"
#include "desktop/review_window.h"
#include "wizard/wiring.h"

namespace kova {

class MainView : public QMainWindow {
 public:
  /// Connects to the controls of `setup`, and gives it message boxes unless it has some. Both
  /// outlive the view.
  MainView(SetupWizard& setup, const CodePage& codePage);

  /// The widget of a control of the main window.
  QWidget* widget(std::string_view name) const { return widgets_->widget(name); }
  /// The guided dialog.
  GuidedDialogView& helper() const { return *helper_; }
  /// The review window, or null until it is opened.
  ReviewWindow* review() const { return review_.get(); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void buildForm();
  void trackFocus(FormArea& area);
  QWidget* buildStatusBar(const QMargins& margins);
  void openReview();
  void showInForm(const std::string& property);
  void buildMenu();
  void connectModel();
  void refreshWindow();
  std::string message() const;
  void refreshStatusLine();
  void openMenuByKey();

  SetupWizard& setup_;
  const CodePage& codePage_;
  QWidget* form_ = nullptr;
  AnnouncingLabel* statusLine_ = nullptr;
  QMenu* guide_ = nullptr;
  std::unique_ptr<FormWidgets> widgets_;
  std::unique_ptr<FieldMarks> marks_;
  std::unique_ptr<LongOperation> longOperation_;
  std::unique_ptr<GuidedDialogView> helper_;
  std::unique_ptr<ReviewWindow> review_;
  KeyRepeatFilter keyRepeatFilter_;
  InputBlocker inputBlocker_;
  QTimer afterPalette_;
  QTimer afterPointer_;
  Connections connections_;
};

}  // namespace kova
