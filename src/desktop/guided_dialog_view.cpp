// SPDX-License-Identifier: MIT
#include "desktop/guided_dialog_view.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QWindow>
#include <utility>

#include "desktop/layout_template.h"
#include "desktop/text_conversion.h"

namespace kova {

// Not a child of the main window: otherwise the process would end with the main window.
GuidedDialogView::GuidedDialogView(ExportHelper& helper, const CodePage& codePage,
                                   QWidget& mainWindow)
    : helper_(helper),
      codePage_(codePage),
      mainWindow_(mainWindow),
      widgets_(*this, guidedDialogTemplates(), designedControls(helper), codePage,
               [this] { markDefault(); }) {
  setObjectName(QStringLiteral("ExportHelper"));
  connectCallback(connections_, helper_.window.notifyView, [this] { refresh(); });
  connectCallback(connections_, helper_.window.raise, [this] { bringToFront(); });
  mainWindow_.installEventFilter(this);
  markDefault();
}

/// Marks the button that Enter presses.
void GuidedDialogView::markDefault() {
  const char* name = helper_.nextParam.enabled() ? "nextParam" : "DoneParam";
  auto* button = qobject_cast<QPushButton*>(widgets_.widget(name));
  if (std::exchange(default_, button) != button) button->setDefault(true);
}

void GuidedDialogView::refresh() {
  if (!helper_.window.visible()) {
    done(QDialog::Rejected);
    return;
  }
  setWindowTitle(toShown(helper_.window.title, codePage_));
  if (isVisible()) return;
  if (QWidget* first = widgets_.firstInTabOrder()) first->setFocus(Qt::OtherFocusReason);
  resize(sizeHint());
  move(mainWindow_.frameGeometry().center() - rect().center());
  create();
  windowHandle()->setTransientParent(mainWindow_.windowHandle());
  show();
}

void GuidedDialogView::bringToFront() {
  setWindowState(windowState() & ~Qt::WindowMinimized);
  raise();
  activateWindow();
}

/// Detaches the dialog from the main window when that one is closed.
bool GuidedDialogView::eventFilter(QObject* watched, QEvent* event) {
  const bool closes = watched == &mainWindow_ && event->type() == QEvent::Close;
  if (closes && windowHandle() != nullptr) windowHandle()->setTransientParent(nullptr);
  return QDialog::eventFilter(watched, event);
}

/// The dialog opens with the focus on a button, but typed text is meant for the box.
void GuidedDialogView::keyPressEvent(QKeyEvent* event) {
  QWidget* box = widgets_.widget("ParamText");
  const bool isText = !event->text().isEmpty() && event->text().front().isPrint() &&
                      (event->modifiers() & ~Qt::ShiftModifier) == Qt::NoModifier;
  if (isText && !box->hasFocus()) {
    box->setFocus(Qt::OtherFocusReason);
    QCoreApplication::sendEvent(box, event);
  } else {
    QDialog::keyPressEvent(event);
  }
}

}  // namespace kova
