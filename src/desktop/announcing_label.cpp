// SPDX-License-Identifier: MIT
#include "desktop/announcing_label.h"

#include <QAccessibleWidget>
#include <algorithm>

#include "desktop/text_conversion.h"

namespace kova {
namespace {

/// Screen readers speak only notifications of widgets that do not have the focus.
QAccessibleInterface* describe(const QString& /*className*/, QObject* object) {
  auto* line = dynamic_cast<AnnouncingLabel*>(object);
  return line == nullptr ? nullptr : new QAccessibleWidget(line, QAccessible::Notification);
}

}  // namespace

AnnouncingLabel::AnnouncingLabel(QWidget* parent) : QLabel(parent) {
  QAccessible::installFactory(&describe);
  setTextFormat(Qt::PlainText);
  setWordWrap(true);
  setAlignment(Qt::AlignLeft | Qt::AlignTop);
}

int AnnouncingLabel::heightForWidth(int width) const {
  constexpr int lines = 2;
  const QMargins edges = contentsMargins();
  const int least = lines * fontMetrics().lineSpacing() + edges.top() + edges.bottom();
  return std::max(QLabel::heightForWidth(width), least);
}

void AnnouncingLabel::announce(const QString& message) {
  if (message == text()) return;
  setText(message);
  setToolTip(toToolTip(message));
  speak();
}

void AnnouncingLabel::speak(const QString& what) {
  setAccessibleName((what + u' ' + text()).trimmed());
  if (accessibleName().isEmpty() || !QAccessible::isActive()) return;
  QAccessibleEvent shown(this, QAccessible::ObjectShow);
  QAccessible::updateAccessibility(&shown);
}

}  // namespace kova
