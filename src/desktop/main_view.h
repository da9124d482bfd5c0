// SPDX-License-Identifier: MIT
// The main window on screen, with all that belongs to it: menu, status line, message boxes and the
// guided dialog.
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
#include "desktop/form_widgets.h"
#include "desktop/guided_dialog_view.h"
#include "desktop/long_operation.h"
#include "desktop/review_window.h"
#include "desktop/small_widgets.h"
#include "wizard/wiring.h"

namespace kova {

class MainView : public QMainWindow {
 public:
  /// Hangs itself on the controls of `setup` and, unless it has some, gives it message boxes. Both
  /// outlive the view.
  MainView(SetupWizard& setup, const CodePage& codePage);

  /// The widget of a control of the main window.
  QWidget* widget(std::string_view name) const { return widgets_->widget(name); }
  /// The guided dialog.
  GuidedDialogView& helper() const { return *helper_; }
  /// The review, once it has been opened.
  ReviewWindow* review() const { return review_.get(); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void buildForm();
  void followFocus(FormArea& area);
  QWidget* buildFoot(const QMargins& margins);
  void openReview();
  void showInForm(const std::string& property);
  void buildMenu();
  void attach();
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
  HeldKeys heldKeys_;
  InputBlocker inputBlocker_;
  QTimer afterPalette_;
  QTimer afterPointer_;
  Connections connections_;
};

}  // namespace kova
