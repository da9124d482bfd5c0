// SPDX-License-Identifier: MIT
#include "desktop/helper_view.h"

#include <QPushButton>

#include "desktop/text_seam.h"

namespace kova {

// Not a child of the main window: the toolkit would end the process with that one alone.
HelperView::HelperView(ExportHelper& helper, const CodePage& codePage, QWidget& mainWindow)
    : helper_(helper),
      codePage_(codePage),
      mainWindow_(mainWindow),
      widgets_(*this, designedControls(helper, exportHelperDesign()), codePage, [] {}) {
  setObjectName(QStringLiteral("ExportHelper"));
  helper_.window.mirror = [this] { mirror(); };
  helper_.window.raise = [this] {
    raise();
    activateWindow();
  };
  helper_.nextParam.mirror = [this, mirrorNext = helper_.nextParam.mirror] {
    mirrorNext();
    markDefault();
  };
  markDefault();
}

HelperView::~HelperView() {
  helper_.window.mirror = {};
  helper_.window.raise = {};
}

/// The Escape key and the window's own close control.
void HelperView::reject() {
  helper_.window.unload();
}

/// Shows what Enter does in the box.
void HelperView::markDefault() {
  const bool goesOn = helper_.nextParam.enabled();
  const char* name = goesOn ? "nextParam" : "DoneParam";
  if (auto* button = qobject_cast<QPushButton*>(widgets_.widget(name))) button->setDefault(true);
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
