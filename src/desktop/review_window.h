// SPDX-License-Identifier: MIT
// The review window: what Done will write, findings, and backups. It follows the form.
#pragma once

#include <QPushButton>
#include <QTabWidget>
#include <QTimer>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "desktop/draft_keeper.h"
#include "desktop/review_page_view.h"
#include "desktop/session_page_view.h"
#include "review/change_page.h"
#include "review/row_page.h"

namespace kova {

class ReviewWindow : public QTabWidget {
 public:
  /// `chosen` gets the property to show in the form. `drafts` may be null. All arguments outlive
  /// the window.
  ReviewWindow(Wizard& wizard, const CodePage& codePage, UndoControls& undo, DraftKeeper* drafts,
               const std::function<void(const std::string&)>& chosen);

  /// Shows the window in front of the others.
  void open();
  /// Refreshes the window soon, if it is visible.
  void scheduleRefresh();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void refresh();
  void refreshBackups();
  std::optional<BackupSet> chosenBackups(bool fileOnly) const;
  void updateButtons();
  void restore(bool fileOnly);
  void buildWriting();
  void buildBackups();
  void buildRows();
  std::optional<ChosenRow> chosenRow() const;
  /// Runs `change`, which becomes a step of the session with this name.
  void changeRows(const std::string& step, const std::function<void()>& change);
  void renameChosen();

  Wizard& wizard_;
  const CodePage& codePage_;
  std::vector<BackupSet> sets_;
  ReviewPageView* writing_;
  ReviewPageView* findings_;
  ReviewPageView* backups_;
  ReviewPageView* rows_;
  SessionPageView* session_;
  UndoControls& undo_;
  DraftKeeper* drafts_;
  QPushButton* putBack_;
  QPushButton* leaveOut_;
  QPushButton* restoreSet_;
  QPushButton* restoreFile_;
  QPushButton* restoreDraft_;
  QPushButton* deleteDraft_;
  QPushButton* deleteDrafts_;
  QPushButton* delete_;
  QPushButton* takeSettings_;
  QPushButton* rename_;
  QTimer soon_;
};

}  // namespace kova
