// SPDX-License-Identifier: MIT
#include "desktop/session_page_view.h"

#include <QDateTime>
#include <QLabel>
#include <QVBoxLayout>

#include "desktop/text_conversion.h"

namespace kova {

SessionPageView::SessionPageView(UndoControls& undo, const CodePage& codePage)
    : undo_(undo),
      codePage_(codePage),
      steps_(new QListWidget),
      goBack_(new QPushButton(QStringLiteral("&Go back to before this step"))) {
  steps_->setAccessibleName(QStringLiteral("Steps"));
  auto* heading = new QLabel(
      QStringLiteral("What you did in this session, newest first. Going back writes nothing."));
  heading->setWordWrap(true);
  auto* all = new QVBoxLayout(this);
  all->addWidget(heading);
  all->addWidget(steps_, 1);
  all->addWidget(goBack_, 0, Qt::AlignRight);
  connect(steps_, &QListWidget::itemActivated, this, &SessionPageView::goBack);
  connect(goBack_, &QPushButton::clicked, this, &SessionPageView::goBack);
  refresh();
}

void SessionPageView::refresh() {
  const auto& steps = undo_.history().steps();
  const int chosen = steps_->currentRow();
  const bool keepsChoice = steps_->count() == static_cast<int>(steps.size());
  steps_->clear();
  for (std::size_t step = steps.size(); step-- > 0;) {
    const QString time =
        QDateTime::fromSecsSinceEpoch(steps[step].time).toString(QStringLiteral("HH:mm:ss"));
    const bool isUndone = step >= undo_.history().done();
    steps_->addItem(time + QStringLiteral("  ") + toShown(steps[step].name, codePage_) +
                    (isUndone ? QStringLiteral(" (undone)") : QString()));
  }
  steps_->setCurrentRow(keepsChoice ? chosen : 0);
  goBack_->setEnabled(!steps.empty());
}

void SessionPageView::goBack() {
  const int row = steps_->currentRow();
  if (row >= 0) undo_.goBefore(static_cast<std::size_t>(steps_->count() - 1 - row));
}

}  // namespace kova
