// SPDX-License-Identifier: MIT
// Undo and Redo of the session: their buttons, keys, and steps.
#pragma once

#include <QObject>
#include <QPushButton>

#include "core/undo_history.h"
#include "desktop/form_widgets.h"
#include "desktop/session_recorder.h"

namespace kova {

class UndoControls : public QObject {
 public:
  /// Makes the buttons as children of `bar`; the keys work in its window. All arguments outlive the
  /// object.
  UndoControls(Wizard& wizard, FormWidgets& widgets, const CodePage& codePage, QWidget& bar);

  QPushButton* undoButton() const { return undo_; }
  QPushButton* redoButton() const { return redo_; }
  const UndoHistory& history() const { return history_; }
  void undo();
  void redo();
  /// Goes to the moment before a step of the history.
  void goBefore(std::size_t step);
  /// Runs `change`, which may set any control, as a step of its own.
  void replaceSession(std::string step, const Handler& change);
  /// Names the step that the current action makes.
  void nameStep(std::string name) { history_.nameNextStep(std::move(name)); }

  /// Runs when the steps have changed.
  Handler changed;
  /// Runs after each user action, and after each step back or ahead.
  Handler actionEnded;
  /// Runs after a step back or ahead, with what it has done, which the status line of that moment
  /// does not tell; and after any other change of the session, with nothing.
  std::function<void(const QString&)> moved;

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QPushButton* makeButton(const QString& name, void (UndoControls::*move)(), QKeyCombination key,
                          QKeyCombination otherKey, QWidget& bar) const;
  void go(const QString& what, const Step* step, const Handler& move);
  void nameButtons();

  UndoHistory history_;
  SessionRecorder recorder_;
  FormWidgets& widgets_;
  const CodePage& codePage_;
  QPushButton* undo_;
  QPushButton* redo_;
};

}  // namespace kova
