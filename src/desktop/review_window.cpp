// SPDX-License-Identifier: MIT
#include "desktop/review_window.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QScreen>

namespace kova {
namespace {

constexpr int refreshPause = 150;  // milliseconds after the last event, to keep typing fast
constexpr QSize charactersAndLines(130, 32);

}  // namespace

ReviewWindow::ReviewWindow(Wizard& wizard, const CodePage& codePage,
                           const std::function<void(const std::string&)>& chosen)
    : wizard_(wizard),
      codePage_(codePage),
      writing_(new ReviewPageView(codePage, chosen)),
      findings_(new ReviewPageView(codePage, chosen)),
      backups_(new ReviewPageView(codePage, chosen)),
      restoreSet_(new QPushButton(QStringLiteral("&Restore set ..."))),
      restoreFile_(new QPushButton(QStringLiteral("Restore this f&ile ..."))) {
  setObjectName(QStringLiteral("review"));
  setWindowTitle(QStringLiteral("Review"));
  // This window must not keep the program running.
  setAttribute(Qt::WA_QuitOnClose, false);
  setDocumentMode(true);
  addTab(writing_, QStringLiteral("&What Done will write"));
  addTab(findings_, QStringLiteral("&Findings"));
  addTab(backups_, QStringLiteral("&Backups"));
  auto* buttons = new QWidget;
  auto* row = new QHBoxLayout(buttons);
  row->setContentsMargins(0, 0, 0, 0);
  row->addStretch(1);
  row->addWidget(restoreFile_);
  row->addWidget(restoreSet_);
  backups_->addBelow(buttons);
  backups_->moved = [this] { updateButtons(); };
  connect(restoreSet_, &QPushButton::clicked, this, [this] { restore(false); });
  connect(restoreFile_, &QPushButton::clicked, this, [this] { restore(true); });
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
  const ReviewOfDone review = reviewDone(wizard_, codePage_);
  writing_->show(review.writing);
  findings_->show(review.findings);
}

void ReviewWindow::refreshBackups() {
  sets_ = backupSetsOf(wizard_);
  backups_->show(reviewBackups(wizard_, sets_));
}

std::optional<BackupSet> ReviewWindow::chosenBackups(bool fileOnly) const {
  const std::string file = backups_->chosenLine();
  if (fileOnly && file.empty()) return std::nullopt;
  return kova::chosenBackups(wizard_, sets_, backups_->chosenGroup(), fileOnly ? file : "");
}

void ReviewWindow::updateButtons() {
  restoreSet_->setEnabled(chosenBackups(false).has_value());
  restoreFile_->setEnabled(chosenBackups(true).has_value());
}

void ReviewWindow::restore(bool fileOnly) {
  if (const auto chosen = chosenBackups(fileOnly)) confirmAndRestore(wizard_, *chosen);
  refreshBackups();
}

}  // namespace kova
