// SPDX-License-Identifier: MIT
// Help at the control with the focus, from the documents as they are installed.
#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QPushButton>

#include "window/desk.h"

namespace kova::test {
namespace {

struct Help : AtTheWindow {
  /// Opens the help and returns what is selected in it; comes back to the form.
  std::string open() {
    desk.key("F1");
    EXPECT_TRUE(QTest::qWaitFor([&] { return desk.view.help() != nullptr; }));
    EXPECT_TRUE(QTest::qWaitForWindowActive(desk.view.help()));
    std::string found = desk.view.help()->page().textCursor().selectedText().toStdString();
    desk.key("Esc");
    desk.view.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&desk.view));
    return found;
  }
};

TEST_F(Help, OpensAtTheEntryOfEachControl) {
  desk.type("MAGNET");
  const QWidget* first = QApplication::focusWidget();
  std::size_t controls = 0;
  do {
    const QWidget& focused = *QApplication::focusWidget();
    const auto* button = qobject_cast<const QAbstractButton*>(&focused);
    QString name = button == nullptr ? focused.accessibleName() : button->text().remove('&');
    if (name.endsWith(" :")) name.chop(2);
    EXPECT_EQ(open(), name.toStdString()) << focused.objectName().toStdString();
    desk.key("Tab");
    ++controls;
  } while (QApplication::focusWidget() != first && controls < 100);
  EXPECT_GT(controls, 40U);
}

TEST_F(Help, SearchesTheWholePageAndGoesBack) {
  open();
  HelpWindow& help = *desk.view.help();
  help.openSection("Review");
  const QString reference = help.page().source().fileName();
  help.findChild<QLineEdit*>()->setText("Device Server Information");
  for (int hits = 0; hits < 3; ++hits) {
    QTest::keyClick(help.findChild<QLineEdit*>(), Qt::Key_Return);
    EXPECT_TRUE(help.page().textCursor().hasSelection()) << "also from behind the last hit";
  }
  const auto press = [&help](const char* caption) {
    for (QPushButton* button : help.findChildren<QPushButton*>()) {
      if (button->text() == caption) button->click();
    }
  };
  press("&Contents");
  EXPECT_NE(help.page().source().fileName(), reference);
  press("&Back");
  EXPECT_EQ(help.page().source().fileName(), reference);
  auto& browser = *help.findChild<QTextBrowser*>();
  browser.setSource(browser.source().resolved(QUrl("how-to.md#keep-the-servers-device-names")));
  EXPECT_EQ(help.page().textCursor().block().text(), "Keep the server's device names");
  press("Copy &details");
  EXPECT_TRUE(QGuiApplication::clipboard()->text().contains(
      QString::fromStdString(form.ProjectDir.text())));
}

}  // namespace
}  // namespace kova::test
