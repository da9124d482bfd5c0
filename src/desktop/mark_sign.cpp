// SPDX-License-Identifier: MIT
#include "desktop/mark_sign.h"

#include <QAbstractScrollArea>
#include <QEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>

namespace kova {
namespace {

/// The part of a field that contains its text.
QWidget* insideOf(QWidget& field) {
  auto* area = qobject_cast<QAbstractScrollArea*>(&field);
  return area == nullptr ? &field : area->viewport();
}

}  // namespace

MarkSign::MarkSign(QWidget& field) : QWidget(insideOf(field)) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  parentWidget()->installEventFilter(this);
  place();
}

void MarkSign::setVisible(bool visible) {
  if (auto* line = qobject_cast<QLineEdit*>(parentWidget())) {
    line->setTextMargins(0, 0, visible ? width() : 0, 0);
  }
  QWidget::setVisible(visible);
}

bool MarkSign::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize || event->type() == QEvent::FontChange) place();
  return QWidget::eventFilter(watched, event);
}

void MarkSign::place() {
  const QWidget& field = *parentWidget();
  const int height = field.fontMetrics().height();
  const int middle = std::min(field.height(), 2 * height) / 2;
  setGeometry(field.width() - height - 2, middle - height / 2, height, height);
}

/// A triangle with an exclamation mark, in the colour of the text.
void MarkSign::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(palette().color(QPalette::Text), 1.2));
  const QRectF box = QRectF(rect()).adjusted(1.5, 2.5, -1.5, -1.5);
  painter.drawConvexPolygon(
      QPolygonF{box.bottomLeft(), QPointF(box.center().x(), box.top()), box.bottomRight()});
  const qreal x = box.center().x();
  const qreal step = box.height() / 8;
  painter.drawLine(QPointF(x, box.top() + 3 * step), QPointF(x, box.top() + 5 * step));
  painter.drawPoint(QPointF(x, box.bottom() - 1.5 * step));
}

}  // namespace kova
