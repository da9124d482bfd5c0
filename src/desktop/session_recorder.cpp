// SPDX-License-Identifier: MIT
#include "desktop/session_recorder.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QThread>
#include <utility>

namespace kova {
namespace {

bool isUserAction(QEvent::Type type) {
  switch (type) {
    case QEvent::KeyPress:
    case QEvent::InputMethod:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::Close:
      return true;
    default:
      return false;
  }
}

}  // namespace

SessionRecorder::SessionRecorder(std::function<void(std::size_t)> ended)
    : ended_(std::move(ended)) {
  qApp->installEventFilter(this);
  connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
          &SessionRecorder::endAction);
}

bool SessionRecorder::eventFilter(QObject* watched, QEvent* event) {
  // Input comes to the window first.
  if (isUserAction(event->type()) && watched->isWindowType()) {
    endAction();
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::InputMethod;
    QWidget* focused = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    const bool isAccessKey = event->type() == QEvent::KeyPress &&
                             (static_cast<QKeyEvent*>(event)->modifiers() & Qt::AltModifier);
    keys_ = isKey && !isAccessKey && focused != nullptr;
    if (keys_ && typedInto_ != focused) ++typing_;
    typedInto_ = keys_ ? focused : nullptr;
    mayHaveChanged_ = true;
  } else if (event->type() == QEvent::UpdateRequest || event->type() == QEvent::FocusIn) {
    mayHaveChanged_ = true;  // by a screen reader, whose actions are no input
  }
  return QObject::eventFilter(watched, event);
}

bool SessionRecorder::endAction() {
  if (QThread::currentThread()->loopLevel() > 1) return false;
  if (std::exchange(mayHaveChanged_, false)) ended_(keys_ ? typing_ : 0);
  return true;
}

}  // namespace kova
