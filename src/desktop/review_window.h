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

#include "desktop/review_page_view.h"

namespace kova {

class ReviewWindow : public QTabWidget {
 public:
  /// `chosen` gets the property to show in the form. The wizard outlives the window.
  ReviewWindow(Wizard& wizard, const CodePage& codePage,
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

  Wizard& wizard_;
  const CodePage& codePage_;
  std::vector<BackupSet> sets_;
  ReviewPageView* writing_;
  ReviewPageView* findings_;
  ReviewPageView* backups_;
  QPushButton* restoreSet_;
  QPushButton* restoreFile_;
  QTimer soon_;
};

}  // namespace kova
