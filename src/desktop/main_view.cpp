// SPDX-License-Identifier: MIT
#include "desktop/main_view.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QVBoxLayout>
#include <QWindow>
#include <utility>

#include "core/environment_values.h"
#include "core/status.h"
#include "desktop/action_button.h"
#include "desktop/colours.h"
#include "desktop/layout_template.h"
#include "desktop/message_boxes.h"
#include "desktop/status_bar.h"
#include "desktop/text_conversion.h"
#include "wizard/focus_message.h"

namespace kova {
namespace {

constexpr int pauseAfterMove = 600;  // milliseconds

QAction* addEntry(QMenu& menu, std::string_view name, std::string_view caption, MenuEntry& entry,
                  const CodePage& codePage) {
  QAction* action = menu.addAction(toShown(caption, codePage));
  action->setObjectName(toShown(name, codePage));
  QObject::connect(action, &QAction::triggered, &menu, [&entry] { entry.click(); });
  return action;
}

/// Adapts the colours of texts in all windows, and keeps the desktop's other colours.
void keepTextsReadable() {
  const QPalette palette = QApplication::palette();
  const QPalette readable = withReadableTexts(palette);
  if (readable != palette) QApplication::setPalette(readable);
}

}  // namespace

MainView::MainView(SetupWizard& setup, const CodePage& codePage, DraftFolder* drafts)
    : setup_(setup),
      codePage_(codePage),
      keyRepeatFilter_(QGuiApplication::platformName() == QStringLiteral("xcb")) {
  setObjectName(QStringLiteral("Form1"));
  afterPalette_.setSingleShot(true);
  connect(&afterPalette_, &QTimer::timeout, this, &keepTextsReadable);
  afterPointer_.setSingleShot(true);
  connect(&afterPointer_, &QTimer::timeout, this, &MainView::refreshStatusLine);
  keepTextsReadable();
  // Spread the palette now, before there are widgets to update.
  QCoreApplication::sendPostedEvents(this, QEvent::ApplicationPaletteChange);
  buildForm();
  if (drafts != nullptr) keepDrafts(*drafts);
  buildMenu();
  helper_ = std::make_unique<GuidedDialogView>(setup_.helper, codePage_, *this);
  connectModel();
  qApp->installEventFilter(&keyRepeatFilter_);
  // Far away by the Tab key. No letter is free.
  Qt::Key digit = Qt::Key_3;
  for (const char* control :
       {"OutputDataFormat", "PropertyList", "deviceNamesInputText", "almMaskText"}) {
    auto* key = new QShortcut(Qt::ALT | digit, this);
    connect(key, &QShortcut::activated, widget(control),
            [shown = widget(control)] { shown->setFocus(Qt::ShortcutFocusReason); });
    digit = static_cast<Qt::Key>(digit + 1);
  }
  auto* help = new QShortcut(QKeySequence::HelpContents, this);
  help->setContext(Qt::ApplicationShortcut);
  connect(help, &QShortcut::activated, this, &MainView::openHelp);
}

void MainView::buildForm() {
  auto* all = new QWidget(this);
  auto* area = new FormArea(all);
  form_ = new QWidget(area);
  widgets_ = std::make_unique<FormWidgets>(*form_, mainWindowTemplates(),
                                           designedControls(setup_.wizard.form), codePage_, [this] {
                                             if (marks_) marks_->scheduleUpdate();
                                             if (review_) review_->scheduleRefresh();
                                           });
  marks_ = std::make_unique<FieldMarks>(widgets_->fields(), codePage_, setup_.wizard,
                                        [this] { refreshStatusLine(); });
  area->setWidget(form_);

  auto* layout = new QVBoxLayout(all);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(area, 1);
  layout->addWidget(buildStatusBar(form_->layout()->contentsMargins()));
  setCentralWidget(all);
  trackFocus(*area);
}

/// The status line and the button of the review, below the form.
QWidget* MainView::buildStatusBar(const QMargins& margins) {
  auto* bar = new StatusBar(margins);
  statusLine_ = new AnnouncingLabel(bar);
  statusLine_->setObjectName(QStringLiteral("statusLine"));
  auto* review = new ActionButton(false, bar);
  review->setObjectName(QStringLiteral("Review"));
  review->setText(QStringLiteral("Review"));
  review->setShortcut(QKeySequence(QStringLiteral("Alt+Q")));
  review->setToolTip(QStringLiteral("What Done will write, findings, backups and drafts (Alt+Q)"));
  review->setAccessibleDescription(review->toolTip());
  // A click must not take the focus from a field of the form.
  review->setFocusPolicy(Qt::TabFocus);
  connect(review, &QPushButton::clicked, this, &MainView::openReview);
  bar->setLine(statusLine_);
  bar->addButton(review);
  undo_ = std::make_unique<UndoControls>(setup_.wizard, *widgets_, codePage_, *bar);
  undo_->changed = [this] {
    if (review_) review_->scheduleRefresh();
  };
  // Screen readers drop what comes with the many changes of a step back.
  undo_->moved = [this](const QString& what) {
    QTimer::singleShot(pauseAfterMove, this, [this, what] { statusLine_->speak(what); });
  };
  bar->addButton(undo_->undoButton());
  bar->addButton(undo_->redoButton());
  return bar;
}

void MainView::keepDrafts(DraftFolder& folder) {
  drafts_ = std::make_unique<DraftKeeper>(setup_.wizard, *undo_, folder);
  undo_->actionEnded = [this] { drafts_->actionEnded(); };
  connectCallback(connections_, setup_.wizard.beforeWriting, [this] { drafts_->beginDone(); });
}

void MainView::reportDrafts() {
  if (!drafts_ || !drafts_->reportKept() || windowHandle() == nullptr) return;
  // A screen reader hears nothing of a window before it is in front.
  const auto speak = [this] { QTimer::singleShot(0, this, [this] { statusLine_->speak(); }); };
  connect(windowHandle(), &QWindow::activeChanged, this, speak, Qt::SingleShotConnection);
}

void MainView::openReview() {
  if (!review_) {
    review_ = std::make_unique<ReviewWindow>(
        setup_.wizard, codePage_, *undo_, drafts_.get(),
        [this](const std::string& property) { showInForm(property); });
    // Its frame will be like this window's.
    const QSize edges = frameSize() - size();
    const QRect room = screen()->availableGeometry();
    review_->resize(review_->size().boundedTo(room.size() - edges));
    QRect place(QPoint(), review_->size() + edges);
    place.moveCenter(frameGeometry().center());
    review_->move(std::clamp(place.x(), room.x(), room.right() + 1 - place.width()),
                  std::clamp(place.y(), room.y(), room.bottom() + 1 - place.height()));
  }
  review_->open();
}

/// About the control with the focus, or about the window in front.
void MainView::openHelp() {
  if (!help_) {
    help_ = std::make_unique<HelpWindow>(documentsFolder(), [this] { return factsForReport(); });
  }
  const QWidget* front = QApplication::activeWindow();
  if (front == help_.get()) return;
  if (front == review_.get()) return help_->openSection(QStringLiteral("Review"));
  if (front == helper_.get()) return help_->openSection(QStringLiteral("Guidance"));
  help_->open(focusWidget());
}

QString MainView::factsForReport() const {
  const Environment& environment = setup_.wizard.platform.environment;
  const auto folder = [this](const std::string& text) {
    return text.empty() ? QStringLiteral("none") : toShown(text, codePage_);
  };
  return QStringLiteral(
             "KOVA Device Server Setup Wizard %1, licence MIT. Qt %2, licence LGPL 3.\n"
             "Projects: %3\nThis project: %4\nRepository: %5\nCode page: %6")
      .arg(QStringLiteral(KOVA_VERSION), QString::fromLatin1(qVersion()),
           folder(setup_.wizard.state.homeDrive), folder(setup_.wizard.form.ProjectDir.text()),
           folder(repositoryRoot(environment).text), folder(environment.codePageName()));
}

void MainView::showInForm(const std::string& property) {
  if (!isVisible()) return;
  activateWindow();
  raise();
  widget("PropertyList")->setFocus(Qt::OtherFocusReason);
  selectProperty(setup_.wizard, property);
}

void MainView::trackFocus(FormArea& area) {
  widgets_->widget("Command1")->installEventFilter(this);
  connect(qApp, &QApplication::focusChanged, &area, [this, &area](QWidget*, QWidget* now) {
    if (now == nullptr || !isAncestorOf(now)) return;
    // A message box gives the focus back to where it was.
    if (std::exchange(entered_, now) != now) messageOnEntering_ = setup_.wizard.statusLine.message;
    refreshStatusLine();
    if (!form_->isAncestorOf(now)) return;
    // A longer message may have shrunk the form.
    centralWidget()->layout()->activate();
    // Scrolling while the mouse is pressed would lose the click.
    if (QGuiApplication::mouseButtons() != Qt::NoButton) return;
    // By itself the toolkit would show only the field's caret.
    const QRect place(now->mapTo(form_, QPoint()), now->size());
    constexpr int margin = 8;
    area.ensureVisible(place.right(), place.bottom(), margin, margin);
    area.ensureVisible(place.left(), place.top(), 0, 0);
  });
}

void MainView::buildMenu() {
  Form1& form = setup_.wizard.form;
  guide_ = menuBar()->addMenu(toShown(guideCaption, codePage_));
  guide_->setObjectName(QStringLiteral("guide"));
  addEntry(*guide_, "srvGuide", srvGuideCaption, form.srvGuide, codePage_);
  addEntry(*guide_, "prpGuide", prpGuideCaption, form.prpGuide, codePage_);
}

void MainView::connectModel() {
  Wizard& wizard = setup_.wizard;
  longOperation_ = std::make_unique<LongOperation>(*statusLine_, [this] { refreshStatusLine(); });
  connectCallback(connections_, wizard.form.window.notifyView, [this] { refreshWindow(); });
  connectCallback(connections_, wizard.form.window.raise, [this] {
    raise();
    activateWindow();
  });
  connectCallback(connections_, wizard.form.guide.open, [this] { guide_->popup(QCursor::pos()); });
  connectCallback(connections_, wizard.statusLine.notifyView, [this] { refreshStatusLine(); });
  connectCallback(connections_, wizard.progress,
                  [this](std::size_t files) { longOperation_->progress(files); });
  connectCallback(connections_, wizard.giveEventsTheirTurn,
                  [] { QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents); });
  connectCallback(connections_, wizard.endProcess, [this] {
    if (drafts_) drafts_->end();
    qApp->installEventFilter(&inputBlocker_);
    QCoreApplication::exit(0);
  });
  if (!wizard.messageBox) {
    connectCallback(connections_, wizard.messageBox,
                    messageBoxes(*this, codePage_, wizard.form.window.title));
  }
}

void MainView::refreshWindow() {
  const Window& window = setup_.wizard.form.window;
  if (!window.visible()) {
    close();
    if (review_) review_->close();
    if (help_) help_->close();
    return;
  }
  setWindowTitle(toShown(window.title, codePage_));
  if (isVisible()) return;
  const QSize room = screen()->availableSize();
  resize(sizeHint().boundedTo(room));
  if (QWidget* first = widgets_->firstInTabOrder()) first->setFocus(Qt::OtherFocusReason);
  show();
  // The frame's size is known once the window is on screen. A size that the window manager has
  // chosen stays.
  const auto fit = [this, room, asked = size()] {
    if (size() == asked) resize(asked.boundedTo(room - (frameSize() - size())));
  };
  connect(windowHandle(), &QWindow::activeChanged, this, fit, Qt::SingleShotConnection);
}

/// About Done under the pointer, else about the control with the focus, else the last status. What
/// a press of Done has reported precedes what the next would write.
std::string MainView::message() const {
  const QWidget* done = widgets_->widget("Command1");
  const QWidget* shown = done->underMouse() ? done : focusWidget();
  const std::string& last = setup_.wizard.statusLine.message;
  const bool pressed = done->hasFocus() && shown == done && last != messageOnEntering_;
  if (const auto control = widgets_->control(shown)) {
    if (const std::string now = focusMessage(setup_.wizard, *control); !now.empty()) {
      return pressed && !last.empty() ? last + ' ' + now : now;
    }
  }
  return statusText(setup_.wizard);
}

void MainView::refreshStatusLine() {
  if (review_) review_->scheduleRefresh();
  statusLine_->announce(toShown(message(), codePage_));
}

void MainView::openMenuByKey() {
  menuBar()->setActiveAction(guide_->menuAction());
  guide_->setActiveAction(guide_->actions().first());
}

/// Called when the pointer enters or leaves Done.
bool MainView::eventFilter(QObject* watched, QEvent* event) {
  const bool moves = event->type() == QEvent::Enter || event->type() == QEvent::Leave;
  // The toolkit knows the pointer's place after the event.
  if (moves) afterPointer_.start(0);
  return QMainWindow::eventFilter(watched, event);
}

void MainView::closeEvent(QCloseEvent* event) {
  if (drafts_) drafts_->end();
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
  if (event->type() != QEvent::PaletteChange) return;
  // A palette set while another one is being applied does not reach the widgets.
  afterPalette_.start(0);
  if (marks_) marks_->recolour();
}

}  // namespace kova
