// SPDX-License-Identifier: MIT
// A page of the review window: the steps of the session, to go back to one.
#pragma once

#include <QListWidget>
#include <QPushButton>

#include "desktop/undo_controls.h"

namespace kova {

class SessionPageView : public QWidget {
 public:
  SessionPageView(UndoControls& undo, const CodePage& codePage);

  /// Shows the steps, newest first. The selected step stays selected.
  void refresh();

 private:
  void goBack();

  UndoControls& undo_;
  const CodePage& codePage_;
  QListWidget* steps_;
  QPushButton* goBack_;
};

}  // namespace kova
