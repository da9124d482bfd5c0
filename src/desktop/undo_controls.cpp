// SPDX-License-Identifier: MIT
#include "desktop/undo_controls.h"

#include <QApplication>
#include <QKeyEvent>
#include <QShortcut>

#include "desktop/action_button.h"
#include "desktop/text_conversion.h"

namespace kova {
namespace {

constexpr QKeyCombination undoKeys = Qt::CTRL | Qt::Key_Z;
constexpr QKeyCombination redoKeys = Qt::CTRL | Qt::SHIFT | Qt::Key_Z;
// No letter is free: all are access keys of the form.
constexpr QKeyCombination undoAccess = Qt::ALT | Qt::Key_1;
constexpr QKeyCombination redoAccess = Qt::ALT | Qt::Key_2;

}  // namespace

UndoControls::UndoControls(Wizard& wizard, FormWidgets& widgets, const CodePage& codePage,
                           QWidget& bar)
    : history_(wizard),
      recorder_([this](std::size_t typing) {
        history_.endAction(typing);
        run(actionEnded);
      }),
      widgets_(widgets),
      codePage_(codePage),
      undo_(makeButton(QStringLiteral("Undo"), &UndoControls::undo, undoAccess, undoKeys, bar)),
      redo_(makeButton(QStringLiteral("Redo"), &UndoControls::redo, redoAccess, redoKeys, bar)) {
  // Text fields keep these keys for their own undo. In these two it would open or drop projects.
  for (const char* field : {"ExportName", "ProjectDir"}) {
    widgets_.widget(field)->installEventFilter(this);
  }
  history_.changed = [this] { nameButtons(); };
  nameButtons();
}

QPushButton* UndoControls::makeButton(const QString& name, void (UndoControls::*move)(),
                                      QKeyCombination key, QKeyCombination otherKey,
                                      QWidget& bar) const {
  auto* button = new ActionButton(false, &bar);
  button->setObjectName(name);
  button->setText(name);
  // Neither a click nor a key takes the focus from a field: leaving it may be an action of its own.
  button->setFocusPolicy(Qt::TabFocus);
  connect(button, &QPushButton::clicked, this, move);
  for (const QKeyCombination keys : {key, otherKey}) {
    connect(new QShortcut(keys, &bar), &QShortcut::activated, this, move);
  }
  return button;
}

void UndoControls::undo() {
  go(QStringLiteral("Undone: "), history_.undoStep(), [this] { history_.undo(); });
}

void UndoControls::redo() {
  go(QStringLiteral("Redone: "), history_.redoStep(), [this] { history_.redo(); });
}

void UndoControls::goBefore(std::size_t step) {
  go(QStringLiteral("Back to before: "), &history_.steps().at(step),
     [this, step] { history_.goBefore(step); });
}

void UndoControls::go(const QString& what, const Step* step, const Handler& move) {
  // While a message is open or Done runs, the session is between two moments.
  if (!recorder_.endAction()) return;
  const QString report = step == nullptr ? QString() : what + toShown(step->name, codePage_) + u'.';
  widgets_.restore(move);
  run(actionEnded);
  if (!report.isEmpty() && moved) moved(report);
}

void UndoControls::replaceSession(std::string step, const Handler& change) {
  if (!recorder_.endAction()) return;
  history_.nameNextStep(std::move(step));
  widgets_.restore(change);
  history_.endAction();
  run(actionEnded);
  if (moved) moved({});
}

/// What a press takes back is spoken, and shown as the tool tip.
void UndoControls::nameButtons() {
  const auto name = [this](QPushButton* button, const Step* step, const QKeySequence& key) {
    button->setEnabled(step != nullptr);
    button->setAccessibleName(step == nullptr ? button->text()
                                              : button->text() + QStringLiteral(": ") +
                                                    toShown(step->name, codePage_));
    button->setToolTip(button->accessibleName() + QStringLiteral(" (") +
                       key.toString(QKeySequence::NativeText) + u')');
  };
  name(undo_, history_.undoStep(), undoAccess);
  name(redo_, history_.redoStep(), redoAccess);
  run(changed);
}

bool UndoControls::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride) {
    const QKeyCombination keys = static_cast<QKeyEvent*>(event)->keyCombination();
    if (keys == undoKeys || keys == redoKeys) return true;
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace kova
