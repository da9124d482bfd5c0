// SPDX-License-Identifier: MIT
// An engineer at the real window: keys and mouse go through the window system.
#pragma once

#include <gtest/gtest.h>

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QListView>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QTest>
#include <QTextBlock>
#include <QTimer>
#include <QWindow>
#include <filesystem>
#include <functional>
#include <string>

#include "desktop/main_view.h"
#include "support/engineer.h"

namespace kova::test {

class Desk {
 public:
  /// The program comes up, with message boxes of its own.
  Desk(Engineer& engineer, const CodePage& page, DraftFolder* drafts = nullptr)
      : view(withoutAnswers(engineer), page, drafts) {
    engineer.start();
    view.reportDrafts();
    view.resize(view.sizeHint());
    EXPECT_TRUE(QTest::qWaitForWindowActive(&view));
  }

  template <class Widget = QWidget>
  Widget& widget(const std::string& name) const {
    return *static_cast<Widget*>(view.widget(name));
  }

  void click(const std::string& name) const { click(widget(name), widget(name).rect().center()); }
  void click(const QWidget& target, QPoint place, Qt::MouseButton button = Qt::LeftButton) const {
    QTest::mouseClick(view.windowHandle(), button, {}, target.mapTo(&view, place));
  }
  void doubleClick(const QWidget& target, QPoint place,
                   Qt::MouseButton button = Qt::LeftButton) const {
    QTest::mouseDClick(view.windowHandle(), button, {}, target.mapTo(&view, place));
  }
  QPlainTextEdit& box() const { return widget<QPlainTextEdit>("deviceNamesInputText"); }
  /// Clicks into the device box at the end of a line.
  void clickLine(int line) const {
    QTextCursor cursor(box().document()->findBlockByNumber(line));
    cursor.movePosition(QTextCursor::EndOfBlock);
    click(*box().viewport(), box().cursorRect(cursor).center());
  }
  /// Another window comes to the front and goes.
  static void visitAnotherWindow(const std::function<void()>& act = {}) {
    QWidget other;
    other.show();
    other.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&other));
    if (act) act();
  }
  void type(const QString& text) {
    for (const char32_t letter : text.toUcs4()) {
      QTest::sendKeyEvent(QTest::Click, inFront(), Qt::Key_unknown, QString::fromUcs4(&letter, 1),
                          Qt::NoModifier);
    }
  }
  /// Presses keys, named as in a menu, with blanks between them.
  void key(const QString& names) {
    for (const QString& name : names.split(u' ')) {
      const QKeyCombination key = QKeySequence(name)[0];
      QTest::keyClick(inFront(), key.key(), key.keyboardModifiers());
    }
  }
  /// Writes `text` in place of what the field holds.
  void write(const std::string& name, const QString& text) {
    click(name);
    key("Ctrl+A");
    type(text);
  }
  /// What an input method shows as not yet written, and what it commits.
  static void compose(const QString& preedit, const QString& commit) {
    QInputMethodEvent event(preedit, {});
    event.setCommitString(commit);
    QApplication::sendEvent(QApplication::focusWidget(), &event);
  }
  /// The next message box is looked at and answered by a key; its title and text then stand in
  /// `message`.
  void answer(const QString& pressed, const std::function<void(QWidget& box)>& visit = {}) {
    soon([this, pressed, visit] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (box == nullptr || !box->isActiveWindow()) return answer(pressed, visit);
      message = (box->windowTitle() + QStringLiteral(": ") + box->text()).toStdString();
      if (visit) visit(*box);
      key(pressed);
    });
  }
  /// Runs `act` from the event loop, also from that of a message box.
  void soon(const std::function<void()>& act) {
    QTimer::singleShot(0, &view, [act] {
      act();
      // A pressed key looks for events once more. On Windows that look takes along the word that
      // the loop of a message box is over, and the loop then waits for an event that never comes.
      QAbstractEventDispatcher::instance()->interrupt();
    });
  }

  ReviewWindow& openReview() {
    key("Alt+Q");
    EXPECT_TRUE(QTest::qWaitFor([&] { return view.review() != nullptr; }));
    EXPECT_TRUE(QTest::qWaitForWindowActive(view.review()));
    return *view.review();
  }
  QWidget& list() const { return *widget<QListView>("PropertyList").viewport(); }
  QPoint placeOfLine(int row) const {
    auto& lines = widget<QListView>("PropertyList");
    const QModelIndex line = lines.model()->index(row, 0);
    lines.scrollTo(line);
    return lines.visualRect(line).center();
  }
  std::string focused() {
    inFront();
    const QWidget* widget = QApplication::focusWidget();
    return widget == nullptr ? "nothing" : widget->objectName().toStdString();
  }

  MainView view;
  std::string message;

 private:
  static SetupWizard& withoutAnswers(Engineer& engineer) {
    engineer.program.wizard.messageBox = {};
    return engineer.program;
  }
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
};

/// The window next to the example project. Font and palette are as before afterwards.
struct AtTheWindow : testing::Test {
  AtTheWindow() { std::filesystem::copy(KOVA_EXAMPLE, home.path("MAGNET")); }
  void TearDown() override {
    QApplication::setFont(font);
    QApplication::setPalette(palette);
  }

  const QFont font = QApplication::font();
  const QPalette palette = QApplication::palette();
  const CodePage page = CodePage::windows1252();
  TemporaryFolder home;
  Engineer engineer{home.path()};
  Form1& form = engineer.program.wizard.form;
  Desk desk{engineer, page};
};

/// Looks for events until there is none, in a loop that waits as the program's does.
inline void settle() {
  QEventLoop loop;
  QTimer::singleShot(0, &loop, &QEventLoop::quit);
  loop.exec();
}

/// Runs `acts` inside the event loop, which the program itself has to leave.
inline void untilTheEnd(Desk& desk, const std::function<void()>& acts) {
  QTimer late;
  QObject::connect(&late, &QTimer::timeout, [] { QCoreApplication::exit(1); });
  late.start(20000);
  desk.soon(acts);
  ASSERT_EQ(QApplication::exec(), 0) << "the program does not end";
}

}  // namespace kova::test
