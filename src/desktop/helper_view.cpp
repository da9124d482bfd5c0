// SPDX-License-Identifier: MIT
#include "desktop/helper_view.h"

#include <utility>

#include "desktop/sketch.h"
#include "desktop/text_seam.h"

namespace kova {

// Not a child of the main window: the toolkit would end the process with that one alone.
HelperView::HelperView(ExportHelper& helper, const CodePage& codePage, QWidget& mainWindow)
    : helper_(helper),
      codePage_(codePage),
      mainWindow_(mainWindow),
      widgets_(*this, guidedDialogSketches(), designedControls(helper), codePage,
               [this] { markDefault(); }) {
  setObjectName(QStringLiteral("ExportHelper"));
  hang(hooks_, helper_.window.mirror, [this] { mirror(); });
  hang(hooks_, helper_.window.raise, [this] {
    raise();
    activateWindow();
  });
  markDefault();
}

/// Shows what Enter does in the box.
void HelperView::markDefault() {
  const char* name = helper_.nextParam.enabled() ? "nextParam" : "DoneParam";
  auto* button = qobject_cast<QPushButton*>(widgets_.widget(name));
  if (std::exchange(default_, button) != button) button->setDefault(true);
}

void HelperView::mirror() {
  if (!helper_.window.visible()) {
    done(QDialog::Rejected);
    return;
  }
  setWindowTitle(toShown(helper_.window.title, codePage_));
  if (isVisible()) return;
  if (QWidget* first = widgets_.firstInTabOrder()) first->setFocus(Qt::OtherFocusReason);
  resize(sizeHint());
  move(mainWindow_.frameGeometry().center() - rect().center());
  show();
}

}  // namespace kova
