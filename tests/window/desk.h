// SPDX-License-Identifier: MIT
// An engineer at the real window: keys and mouse go through the window system, the rest of a script
// is that of the engineer without a toolkit.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QListView>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QTest>
#include <QTimer>
#include <QWindow>
#include <functional>
#include <string>

#include "desktop/main_view.h"
#include "support/engineer.h"

namespace kova::test {

class Desk {
 public:
  Desk(SetupWizard& program, const CodePage& page, Engineer* engineer = nullptr)
      : view(program, page), engineer_(engineer) {
    program.start();
    view.resize(view.sizeHint());
    EXPECT_TRUE(QTest::qWaitForWindowActive(&view));
  }

  /// Acts end at "; " or at the end of a line.
  void play(const std::string& script) {
    for (auto lines = QString::fromStdString(script); const QString& line : lines.split(u'\n')) {
      for (const QString& act : line.trimmed().split(QStringLiteral("; "), Qt::SkipEmptyParts)) {
        const std::string wrong = carryOut(act);
        ASSERT_TRUE(wrong.empty()) << act.toStdString() << '\n' << wrong;
      }
    }
  }
  void type(const QString& text) {
    for (const char32_t letter : text.toUcs4()) {
      QTest::sendKeyEvent(QTest::Click, inFront(), Qt::Key_unknown, QString::fromUcs4(&letter, 1),
                          Qt::NoModifier);
    }
  }
  /// What an input method shows as not yet written, and what it commits.
  static void compose(const QString& preedit, const QString& commit) {
    QInputMethodEvent event(preedit, {});
    event.setCommitString(commit);
    QApplication::sendEvent(QApplication::focusWidget(), &event);
  }
  void key(const QString& names) {
    for (const QString& name : names.split(u' ')) {
      const QKeyCombination key = QKeySequence(name)[0];
      QTest::keyClick(inFront(), key.key(), key.keyboardModifiers());
    }
  }
  /// The next message box is answered by a key; its title and text then stand in `message`.
  void answer(const QString& pressed) {
    soon(0, [this, pressed] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (box == nullptr || !box->isActiveWindow()) return answer(pressed);
      message = (box->windowTitle() + QStringLiteral(": ") + box->text()).toStdString();
      key(pressed);
    });
  }
  /// Runs `act` from the event loop, also from that of a message box.
  void soon(int milliseconds, const std::function<void()>& act) {
    timer_.disconnect();
    QObject::connect(&timer_, &QTimer::timeout, &view, act);
    timer_.setSingleShot(true);
    timer_.start(milliseconds);
  }
  static std::string focused() {
    const QWidget* widget = QApplication::focusWidget();
    return widget == nullptr ? "nothing" : widget->objectName().toStdString();
  }

  MainView view;
  std::string message;

 private:
  /// The window that the keyboard writes to. Without a window manager none is in front after a list
  /// or a message has closed.
  QWindow* inFront() {
    const QWidget* popup = QApplication::activePopupWidget();
    if (popup != nullptr) return popup->windowHandle();
    if (QGuiApplication::focusWindow() == nullptr) {
      view.activateWindow();
      EXPECT_TRUE(QTest::qWaitForWindowActive(&view));
    }
    return QGuiApplication::focusWindow();
  }
  void click(const QWidget* widget, QPoint place, Qt::MouseButton button = Qt::LeftButton) const {
    QTest::mouseClick(view.windowHandle(), button, {}, widget->mapTo(&view, place));
  }

  QListView& list() const { return *static_cast<QListView*>(view.widget("PropertyList")); }
  QPoint placeOfLine(int row) const {
    const QModelIndex line = list().model()->index(row, 0);
    list().scrollTo(line);
    return list().visualRect(line).center();
  }

  std::string carryOut(const QString& act) {
    const QStringList words = act.split(u' ');
    const QString& verb = words[0];
    const QString rest = act.mid(verb.size() + 1);
    const QString text = act.mid(verb.size() + words.value(1).size() + 2);
    const auto named = [&] { return view.widget(words[1].toStdString()); };
    if (verb == "click") return click(named(), named()->rect().center()), "";
    if (verb == "write") return carryOut("click " + words[1]), key("Ctrl+A"), type(text), "";
    if (verb == "type") return type(rest), "";
    if (verb == "key") return key(rest), "";
    if (verb == "reply") return answer(rest), "";
    if (verb == "choose") {
      click(named(), named()->rect().center());
      key("Home");
      const int entry = static_cast<QComboBox*>(named())->findText(text);
      for (int row = 0; row < entry; ++row) key("Down");
      return key("Return"), entry < 0 ? "no such entry" : "";
    }
    if (verb == "line") return click(list().viewport(), placeOfLine(rest.toInt())), "";
    if (verb == "double") {
      const QWidget* widget = text.isEmpty() ? named() : list().viewport();
      const QPoint place = text.isEmpty() ? widget->rect().center() : placeOfLine(text.toInt());
      QTest::mouseDClick(view.windowHandle(), Qt::LeftButton, {}, widget->mapTo(&view, place));
      return "";
    }
    if (verb == "spot") {
      auto* box = static_cast<QPlainTextEdit*>(view.widget("deviceNamesInputText"));
      QTextCursor cursor = box->textCursor();
      cursor.setPosition(rest.toInt());
      return click(box->viewport(), box->cursorRect(cursor).center()), "";
    }
    if (verb == "right") {
      click(named(), QPoint(words[2].toInt(), words[3].toInt()), Qt::RightButton);
      QWidget* popup = QApplication::activePopupWidget();
      const bool guide = popup != nullptr && popup->objectName() == "guide";
      if (popup != nullptr) popup->close();
      return guide == (words.value(4) == "opens") ? "" : "the menu opens, or it doesn't";
    }
    if (verb == "away") {
      QWidget other;
      other.show();
      other.activateWindow();
      return QTest::qWaitForWindowActive(&other) ? "" : "no other window";
    }
    if (verb == "focused") return inFront(), focused() == rest.toStdString() ? "" : focused();
    return engineer_ == nullptr ? "no engineer" : engineer_->carryOut(act.toStdString());
  }

  Engineer* engineer_;
  QTimer timer_;
};

/// Runs `acts` inside the event loop, which the program itself has to leave.
inline void untilTheEnd(Desk& desk, const std::function<void()>& acts) {
  QTimer late;
  QObject::connect(&late, &QTimer::timeout, [] { QCoreApplication::exit(1); });
  late.start(20000);
  desk.soon(0, acts);
  ASSERT_EQ(QApplication::exec(), 0) << "the program does not end";
}

}  // namespace kova::test
