// SPDX-License-Identifier: MIT
#include "desktop/status_bar.h"

#include <QResizeEvent>
#include <algorithm>

namespace kova {

StatusBar::StatusBar(const QMargins& margins)
    : all_(new QBoxLayout(QBoxLayout::LeftToRight, this)),
      buttons_(new QBoxLayout(QBoxLayout::LeftToRight)) {
  all_->setContentsMargins(margins.left(), 0, margins.right(), margins.bottom());
  all_->addLayout(buttons_);
  all_->setAlignment(buttons_, Qt::AlignRight | Qt::AlignTop);
}

void StatusBar::addButton(QWidget* button) {
  button->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  buttons_->addWidget(button);
}

QSize StatusBar::minimumSizeHint() const {
  const QMargins margins = all_->contentsMargins();
  const int buttons = buttons_->minimumSize().width() + margins.left() + margins.right();
  return {std::min(buttons, all_->totalMinimumSize().width()), all_->totalMinimumSize().height()};
}

void StatusBar::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  constexpr int charactersOfLine = 40;
  const int line = charactersOfLine * fontMetrics().averageCharWidth();
  const bool fits = event->size().width() >= buttons_->minimumSize().width() + line;
  all_->setDirection(fits ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
}

}  // namespace kova
