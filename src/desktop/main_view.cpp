// SPDX-License-Identifier: MIT
#include "desktop/main_view.h"

#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>
#include <QMenuBar>
#include <QScreen>
#include <QVBoxLayout>

#include "core/status.h"
#include "desktop/make_child.h"
#include "desktop/message_boxes.h"
#include "desktop/small_widgets.h"
#include "desktop/text_seam.h"
#include "editing/field_warnings.h"

namespace kova {
namespace {

QAction* addEntry(QMenu& menu, std::string_view name, std::string_view caption, MenuEntry& entry,
                  const CodePage& codePage) {
  QAction* action = menu.addAction(toShown(caption, codePage));
  action->setObjectName(toShown(name, codePage));
  QObject::connect(action, &QAction::triggered, &menu, [&entry] { entry.click(); });
  return action;
}

}  // namespace

MainView::MainView(SetupWizard& setup, const CodePage& codePage)
    : setup_(setup), codePage_(codePage) {
  setObjectName(QStringLiteral("Form1"));
  buildForm();
  buildMenu();
  helper_ = std::make_unique<HelperView>(setup_.helper, codePage_, *this);
  attach();
}

MainView::~MainView() {
  Wizard& wizard = setup_.wizard;
  for (Handler* handler :
       {&wizard.form.window.mirror, &wizard.form.window.raise, &wizard.form.guide.open,
        &wizard.statusLine.mirror, &wizard.giveEventsTheirTurn, &wizard.endProcess}) {
    *handler = {};
  }
  wizard.progress = {};
  wizard.messageBox = {};
}

void MainView::buildForm() {
  auto* all = makeChild<QWidget>(*this);
  auto* area = makeChild<FormArea>(*all);
  form_ = makeChild<QWidget>(*area);
  statusLine_ = makeChild<QLabel>(*all);
  statusLine_->setObjectName(QStringLiteral("statusLine"));
  statusLine_->setTextFormat(Qt::PlainText);
  statusLine_->setWordWrap(true);
  widgets_ = std::make_unique<FormWidgets>(
      *form_, designedControls(setup_.wizard.form, form1Design()), codePage_, [this] {
        if (marks_) marks_->follow();
      });
  marks_ = std::make_unique<FieldMarks>(
      widgets_->fields(), codePage_,
      [this](const TextField& field) { return fieldWarning(setup_.wizard, field); });
  area->setWidget(form_);

  auto layout = std::make_unique<QVBoxLayout>();
  const QMargins margins = form_->layout()->contentsMargins();
  statusLine_->setContentsMargins(margins.left(), 0, margins.right(), margins.bottom());
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(area, 1);
  layout->addWidget(statusLine_);
  all->setLayout(layout.release());
  setCentralWidget(all);
  connect(qApp, &QApplication::focusChanged, area, [this, area](QWidget*, QWidget* now) {
    if (now == nullptr || !form_->isAncestorOf(now)) return;
    // The toolkit would show the caret of a field and not the field.
    const QRect place(now->mapTo(form_, QPoint()), now->size());
    constexpr int margin = 8;
    area->ensureVisible(place.right(), place.bottom(), margin, margin);
    area->ensureVisible(place.left(), place.top(), 0, 0);
  });
}

void MainView::buildMenu() {
  Form1& form = setup_.wizard.form;
  guide_ = menuBar()->addMenu(toShown(guideCaption, codePage_));
  guide_->setObjectName(QStringLiteral("guide"));
  addEntry(*guide_, "srvGuide", srvGuideCaption, form.srvGuide, codePage_);
  addEntry(*guide_, "prpGuide", prpGuideCaption, form.prpGuide, codePage_);
}

void MainView::attach() {
  Wizard& wizard = setup_.wizard;
  longAct_ = std::make_unique<LongAct>(*statusLine_, [this] { mirrorStatusLine(); });
  wizard.form.window.mirror = [this] { mirrorWindow(); };
  wizard.form.window.raise = [this] {
    raise();
    activateWindow();
  };
  wizard.form.guide.open = [this] { guide_->popup(QCursor::pos()); };
  wizard.statusLine.mirror = [this] { mirrorStatusLine(); };
  wizard.progress = [this](std::size_t files) { longAct_->progress(files); };
  wizard.giveEventsTheirTurn = [] {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
  };
  wizard.endProcess = [this] {
    qApp->installEventFilter(&endOfActs_);
    QCoreApplication::exit(0);
  };
  if (!wizard.messageBox) {
    wizard.messageBox = messageBoxes(*this, codePage_, wizard.form.window.title);
  }
}

void MainView::mirrorWindow() {
  const Window& window = setup_.wizard.form.window;
  if (!window.visible()) {
    close();
    return;
  }
  setWindowTitle(toShown(window.title, codePage_));
  if (isVisible()) return;
  resize(sizeHint().boundedTo(screen()->availableSize()));
  if (QWidget* first = widgets_->firstInTabOrder()) first->setFocus(Qt::OtherFocusReason);
  show();
}

void MainView::mirrorStatusLine() {
  const QString sentence = toShown(statusText(setup_.wizard), codePage_);
  if (sentence == statusLine_->text()) return;
  statusLine_->setText(sentence);
  statusLine_->setToolTip(toToolTip(sentence));
  if (QAccessible::isActive()) {
    QAccessibleEvent alert(statusLine_, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
  }
}

void MainView::openMenuByKey() {
  menuBar()->setActiveAction(guide_->menuAction());
  guide_->setActiveAction(guide_->actions().first());
}

void MainView::closeEvent(QCloseEvent* event) {
  setup_.wizard.form.window.unload();
  event->accept();
}

void MainView::keyPressEvent(QKeyEvent* event) {
  const bool menuKey = event->key() == Qt::Key_Menu || event->key() == Qt::Key_F10;
  if (menuKey && event->modifiers() == Qt::NoModifier) {
    openMenuByKey();
  } else {
    QMainWindow::keyPressEvent(event);
  }
}

void MainView::contextMenuEvent(QContextMenuEvent* event) {
  if (event->reason() == QContextMenuEvent::Keyboard) {
    openMenuByKey();
  } else {
    event->ignore();
  }
}

void MainView::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && marks_) marks_->recolour();
}

}  // namespace kova
