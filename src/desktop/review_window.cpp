// SPDX-License-Identifier: MIT
#include "desktop/review_window.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QKeyEvent>
#include <QScreen>
#include <iterator>

#include "desktop/text_conversion.h"

namespace kova {
namespace {

constexpr int refreshPause = 150;  // milliseconds after the last event, to keep typing fast
constexpr const char* draftHeading =
    "Select unsaved work or a set of backups to see what restoring it would change.";
constexpr QSize charactersAndLines(130, 32);

QWidget* buttonRow(std::initializer_list<QPushButton*> buttons) {
  auto* row = new QWidget;
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addStretch(1);
  for (QPushButton* button : buttons) layout->addWidget(button);
  return row;
}

}  // namespace

ReviewWindow::ReviewWindow(Wizard& wizard, const CodePage& codePage, UndoControls& undo,
                           DraftKeeper* drafts,
                           const std::function<void(const std::string&)>& chosen)
    : wizard_(wizard),
      codePage_(codePage),
      writing_(new ReviewPageView(codePage, chosen)),
      findings_(new ReviewPageView(codePage, chosen)),
      backups_(new ReviewPageView(codePage, chosen)),
      rows_(new ReviewPageView(codePage, chosen)),
      session_(new SessionPageView(undo, codePage)),
      undo_(undo),
      drafts_(drafts),
      putBack_(new QPushButton(QStringLiteral("&Put back"))),
      leaveOut_(new QPushButton(QStringLiteral("&Leave out"))),
      restoreSet_(new QPushButton(QStringLiteral("&Restore set ..."))),
      restoreFile_(new QPushButton(QStringLiteral("Restore this f&ile ..."))),
      restoreDraft_(new QPushButton(QStringLiteral("Res&tore draft"))),
      deleteDraft_(new QPushButton(QStringLiteral("&Delete draft ..."))),
      deleteDrafts_(new QPushButton(QStringLiteral("Delete &all drafts ..."))),
      delete_(new QPushButton(QStringLiteral("&Delete"))),
      takeSettings_(new QPushButton(QStringLiteral("&Use the form's settings"))),
      rename_(new QPushButton(QStringLiteral("Re&name property ..."))) {
  setObjectName(QStringLiteral("review"));
  setWindowTitle(QStringLiteral("Review"));
  // This window must not keep the program running.
  setAttribute(Qt::WA_QuitOnClose, false);
  setDocumentMode(true);
  addTab(writing_, QStringLiteral("&What Done will write"));
  addTab(findings_, QStringLiteral("&Findings"));
  addTab(backups_, QStringLiteral("&Backups and drafts"));
  addTab(rows_, QStringLiteral("R&ows"));
  addTab(session_, QStringLiteral("&Session"));
  buildWriting();
  buildBackups();
  buildRows();
  connect(this, &QTabWidget::currentChanged, this, &ReviewWindow::refresh);
  soon_.setSingleShot(true);
  connect(&soon_, &QTimer::timeout, this, &ReviewWindow::refresh);
  const QFontMetrics font = fontMetrics();
  const QSize wanted(charactersAndLines.width() * font.averageCharWidth(),
                     charactersAndLines.height() * font.lineSpacing());
  resize(wanted);
  updateButtons();
}

void ReviewWindow::open() {
  setWindowState(windowState() & ~Qt::WindowMinimized);
  show();
  raise();
  activateWindow();
  refresh();
}

void ReviewWindow::scheduleRefresh() {
  if (isVisible()) soon_.start(refreshPause);
}

void ReviewWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    close();
  } else {
    QTabWidget::keyPressEvent(event);
  }
}

/// The disk may have changed while another window was active.
void ReviewWindow::changeEvent(QEvent* event) {
  QTabWidget::changeEvent(event);
  if (event->type() == QEvent::ActivationChange && isActiveWindow()) refresh();
}

void ReviewWindow::refresh() {
  soon_.stop();
  if (!isVisible()) return;
  if (currentWidget() == backups_) return refreshBackups();
  if (currentWidget() == session_) return session_->refresh();
  if (currentWidget() == rows_) return rows_->show(reviewRows(wizard_));
  const ReviewOfDone review = reviewDone(wizard_, codePage_);
  writing_->show(review.writing);
  findings_->show(review.findings);
}

void ReviewWindow::refreshBackups() {
  sets_ = backupSetsOf(wizard_);
  ReviewPage page = reviewBackups(wizard_, sets_);
  if (drafts_ != nullptr) {
    std::vector<ReviewGroup> drafts = drafts_->groups();
    if (!drafts.empty()) page.heading = draftHeading;
    page.groups.insert(page.groups.begin(), std::move_iterator(drafts.begin()),
                       std::move_iterator(drafts.end()));
  }
  backups_->show(page);
}

std::optional<BackupSet> ReviewWindow::chosenBackups(bool fileOnly) const {
  const std::string file = backups_->chosenLine();
  if (fileOnly && file.empty()) return std::nullopt;
  return kova::chosenBackups(wizard_, sets_, backups_->chosenGroup(), fileOnly ? file : "");
}

void ReviewWindow::buildWriting() {
  writing_->addBelow(buttonRow({leaveOut_, putBack_}));
  writing_->moved = [this] { updateButtons(); };
  const auto connectChange = [this](QPushButton* button, auto change) {
    connect(button, &QPushButton::clicked, this, [this, button, change] {
      const ReviewLine* chosen = writing_->chosenTopLine();
      if (chosen == nullptr) return;
      const ReviewLine line = *chosen;
      const std::string step = toText(button->text().remove(u'&'), codePage_) + ' ' + line.key;
      undo_.replaceSession(step, [&] { change(wizard_, writing_->chosenGroup(), line); });
      refresh();
    });
  };
  connectChange(putBack_, &putBackChosen);
  connectChange(leaveOut_, &leaveOutChosen);
}

void ReviewWindow::buildBackups() {
  backups_->addBelow(
      buttonRow({deleteDrafts_, deleteDraft_, restoreDraft_, restoreFile_, restoreSet_}));
  backups_->moved = [this] { updateButtons(); };
  connect(restoreSet_, &QPushButton::clicked, this, [this] { restore(false); });
  connect(restoreFile_, &QPushButton::clicked, this, [this] { restore(true); });
  const auto connectDraft = [this](QPushButton* button, const Handler& action) {
    connect(button, &QPushButton::clicked, this, [this, action] {
      action();
      refreshBackups();
    });
  };
  connectDraft(restoreDraft_, [this] { drafts_->restore(backups_->chosenGroup()); });
  connectDraft(deleteDraft_, [this] { drafts_->confirmAndRemove(backups_->chosenGroup()); });
  connectDraft(deleteDrafts_, [this] { drafts_->confirmAndRemoveAll(); });
}

void ReviewWindow::buildRows() {
  auto* renumber = new QPushButton(QStringLiteral("Renu&mber history"));
  rows_->addBelow(buttonRow({delete_, takeSettings_, rename_, renumber}));
  rows_->moved = [this] { updateButtons(); };
  connect(delete_, &QPushButton::clicked, this, [this] {
    if (const auto row = chosenRow()) {
      changeRows("Delete row of " + propertyOf(wizard_, *row),
                 [&] { deleteChosen(wizard_, *row); });
    }
  });
  connect(takeSettings_, &QPushButton::clicked, this, [this] {
    if (const auto row = chosenRow()) {
      changeRows("Use the form's settings", [&] { takeSettings(wizard_, *row); });
    }
  });
  connect(rename_, &QPushButton::clicked, this, &ReviewWindow::renameChosen);
  connect(renumber, &QPushButton::clicked, this,
          [this] { changeRows("Renumber history", [this] { renumberHistory(wizard_); }); });
}

std::optional<ChosenRow> ReviewWindow::chosenRow() const {
  return kova::chosenRow(wizard_, rows_->chosenGroup(), rows_->chosenLine());
}

void ReviewWindow::changeRows(const std::string& step, const std::function<void()>& change) {
  undo_.nameStep(step);
  change();
  refresh();
}

void ReviewWindow::renameChosen() {
  const auto row = chosenRow();
  if (!row) return;
  const std::string name = propertyOf(wizard_, *row);
  bool accepted = false;
  const QString typed =
      QInputDialog::getText(this, QStringLiteral("Rename property"),
                            QStringLiteral("New name of %1, with its history and alarm watches:")
                                .arg(toShown(name, codePage_)),
                            QLineEdit::Normal, toShown(name, codePage_), &accepted);
  const std::string newName = toText(typed, codePage_);
  if (accepted && newName != name) {
    changeRows("Rename " + name + " to " + newName,
               [&] { renameChosenProperty(wizard_, name, newName); });
  }
}

void ReviewWindow::updateButtons() {
  const ReviewLine* change = writing_->chosenTopLine();
  const std::string file = writing_->chosenGroup();
  putBack_->setEnabled(change != nullptr && mayPutBack(wizard_, file, *change));
  leaveOut_->setEnabled(change != nullptr && mayLeaveOut(wizard_, file, *change));
  const auto row = chosenRow();
  delete_->setEnabled(row.has_value());
  takeSettings_->setEnabled(row && mayTakeFormSettings(wizard_, *row));
  rename_->setEnabled(row && hasProperty(wizard_, *row));
  restoreSet_->setEnabled(chosenBackups(false).has_value());
  restoreFile_->setEnabled(chosenBackups(true).has_value());
  const std::string group = backups_->chosenGroup();
  const bool hasDrafts = drafts_ != nullptr && drafts_->hasDrafts();
  for (QPushButton* button : {restoreDraft_, deleteDraft_, deleteDrafts_}) {
    button->setVisible(hasDrafts);
  }
  restoreDraft_->setEnabled(hasDrafts && drafts_->canRestore(group));
  deleteDraft_->setEnabled(hasDrafts && drafts_->isDraft(group));
}

void ReviewWindow::restore(bool fileOnly) {
  if (const auto chosen = chosenBackups(fileOnly)) {
    undo_.nameStep("Restore a backup");
    confirmAndRestore(wizard_, *chosen);
  }
  refreshBackups();
}

}  // namespace kova
