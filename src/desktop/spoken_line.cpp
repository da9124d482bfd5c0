// SPDX-License-Identifier: MIT
#include "desktop/spoken_line.h"

#include <QAccessibleWidget>

#include "desktop/text_seam.h"

namespace kova {
namespace {

/// Of what comes up without the focus, screen readers speak notifications alone.
QAccessibleInterface* describe(const QString& /*className*/, QObject* object) {
  auto* line = dynamic_cast<SpokenLine*>(object);
  return line == nullptr ? nullptr : new QAccessibleWidget(line, QAccessible::Notification);
}

}  // namespace

SpokenLine::SpokenLine(QWidget* parent) : QLabel(parent) {
  QAccessible::installFactory(&describe);
  setTextFormat(Qt::PlainText);
  setWordWrap(true);
}

void SpokenLine::say(const QString& sentence) {
  if (sentence == text()) return;
  setText(sentence);
  setToolTip(toToolTip(sentence));
  setAccessibleName(sentence);
  if (sentence.isEmpty() || !QAccessible::isActive()) return;
  QAccessibleEvent shown(this, QAccessible::ObjectShow);
  QAccessible::updateAccessibility(&shown);
}

}  // namespace kova
