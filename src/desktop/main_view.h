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
#include "desktop/draft_keeper.h"
#include "desktop/event_filters.h"
#include "desktop/field_marks.h"
#include "desktop/form_area.h"
#include "desktop/form_widgets.h"
#include "desktop/guided_dialog_view.h"
#include "desktop/help_window.h"
#include "desktop/long_operation.h"
#include "desktop/review_window.h"
#include "desktop/undo_controls.h"
#include "wizard/wiring.h"

namespace kova {

class MainView : public QMainWindow {
 public:
  /// Connects to the controls of `setup`, and gives it message boxes unless it has some. Keeps
  /// unsaved work in `drafts`, unless that is null. All arguments outlive the view.
  MainView(SetupWizard& setup, const CodePage& codePage, DraftFolder* drafts = nullptr);

  /// Reports unsaved work of earlier sessions. Call it after the start.
  void reportDrafts();

  /// The widget of a control of the main window.
  QWidget* widget(std::string_view name) const { return widgets_->widget(name); }
  /// The guided dialog.
  GuidedDialogView& helper() const { return *helper_; }
  /// The review window, or null until it is opened.
  ReviewWindow* review() const { return review_.get(); }
  UndoControls& undo() const { return *undo_; }
  /// Null if no drafts are kept.
  DraftKeeper* drafts() const { return drafts_.get(); }
  /// The help window, or null until it is opened.
  HelpWindow* help() const { return help_.get(); }

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
  void keepDrafts(DraftFolder& folder);
  void openReview();
  void openHelp();
  QString factsForReport() const;
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
  const QWidget* entered_ = nullptr;  ///< had the focus last, and is only compared
  std::string messageOnEntering_;     ///< the last event when the focus came there
  QMenu* guide_ = nullptr;
  std::unique_ptr<FormWidgets> widgets_;
  std::unique_ptr<FieldMarks> marks_;
  std::unique_ptr<LongOperation> longOperation_;
  std::unique_ptr<GuidedDialogView> helper_;
  std::unique_ptr<ReviewWindow> review_;
  std::unique_ptr<HelpWindow> help_;
  std::unique_ptr<DraftKeeper> drafts_;
  std::unique_ptr<UndoControls> undo_;  ///< goes first, as it tells the others of steps
  KeyRepeatFilter keyRepeatFilter_;
  InputBlocker inputBlocker_;
  QTimer afterPalette_;
  QTimer afterPointer_;
  Connections connections_;
};

}  // namespace kova
