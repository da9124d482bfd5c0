// SPDX-License-Identifier: MIT
// The review next to the form, by keys and mouse.
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QTreeWidget>
#include <algorithm>

#include "window/desk.h"

namespace kova::test {
namespace {

struct Review : AtTheWindow {
  void open() {
    desk.type("MAGNET");
    desk.openReview();
  }
  QWidget& page() const { return *desk.view.review()->currentWidget(); }
  QListWidget& groups() const { return *page().findChild<QListWidget*>(); }
  QTreeWidget& lines() const { return *page().findChild<QTreeWidget*>(); }
  QStringList shown() const {
    QStringList all;
    for (int row = 0; row < groups().count(); ++row) all << groups().item(row)->text();
    return all;
  }
  /// Another window comes to the front, and the review again.
  void comeBack() const {
    Desk::visitAnotherWindow();
    desk.view.review()->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(desk.view.review()));
  }
  QPushButton& button(const QString& caption) const {
    for (QPushButton* one : page().findChildren<QPushButton*>()) {
      if (one->text() == caption) return *one;
    }
    throw Failure("there is no such button");
  }
};

TEST_F(Review, FollowsTheFormAndLeadsBackToIt) {
  open();
  EXPECT_EQ(shown(), QStringList("+ devices.csv (5)")) << "its names come from another file";
  form.PropertyList.select(5);
  form.OutputDataSize.setText("8");
  form.EditCmd.click();
  EXPECT_TRUE(QTest::qWaitFor([&] { return shown().contains("~ exports.csv (1)"); }));

  groups().setCurrentRow(2);
  lines().setFocus();
  desk.key("Home");
  const QTreeWidgetItem& row = *lines().currentItem();
  EXPECT_EQ(row.text(0), QStringLiteral("~ MAGNET STATE"));
  EXPECT_EQ(row.child(0)->text(0), QStringLiteral("~ PROPERTY_SIZE"));
  EXPECT_EQ(row.child(0)->text(1) + row.child(0)->text(2), QStringLiteral("48"));
  form.PropertyList.select(0);
  desk.key("Return");
  EXPECT_EQ(form.PropertyName.text(), "STATE");

  form.PropertyList.select(7);
  form.OutputDataSize.setText("8");
  form.EditCmd.click();
  EXPECT_TRUE(QTest::qWaitFor([&] { return shown().contains("~ exports.csv (2)"); }));
  EXPECT_EQ(groups().currentItem()->text(), QStringLiteral("~ exports.csv (2)"));

  EXPECT_FALSE(button("&Leave out").isEnabled());
  button("&Put back").click();
  EXPECT_EQ(form.PropertyList.selectedIndex(), 7) << "putting back selects nothing";
  EXPECT_EQ(shown()[2], QStringLiteral("~ exports.csv (1)"));
  EXPECT_EQ(desk.view.undo().history().undoStep()->name, "Put back MAGNET STATE");
}

TEST_F(Review, TellsWhatAKeyInTheFormBreaks) {
  open();
  desk.key("Alt+F");
  EXPECT_EQ(shown(), QStringList());
  form.PropertyName.setText("A,B");
  form.EditCmd.click();
  EXPECT_TRUE(QTest::qWaitFor([&] { return groups().count() > 0; }));
  EXPECT_TRUE(shown()[0].startsWith("! exports.csv")) << shown().join(u' ').toStdString();
  const QString cure = lines().topLevelItem(0)->text(3);
  EXPECT_FALSE(cure.isEmpty());
  const auto labels = page().findChildren<QLabel*>();
  EXPECT_TRUE(std::any_of(labels.begin(), labels.end(), [&](const QLabel* label) {
    return label->isVisible() && label->text().endsWith(cure);
  })) << "what to do is read without scrolling";
  desk.key("Escape");
  EXPECT_FALSE(desk.view.review()->isVisible());
  EXPECT_TRUE(desk.view.isVisible());
}

TEST_F(Review, RestoresWhatIsAskedForAndEntersTheProjectAnew) {
  open();
  const Files former = home.files("MAGNET");
  engineer.clock.now += 100;
  home.write("MAGNET/history.csv", "lost");
  home.write("MAGNET/almwatch.csv", "lost too");
  form.PropertyName.setText("NEW");
  form.EditCmd.click();
  desk.key("Alt+B");
  ASSERT_EQ(groups().count(), 1);
  EXPECT_TRUE(groups().item(0)->text().endsWith(", 1 minute ago (5)"));
  lines().clearSelection();
  EXPECT_FALSE(button("Restore this f&ile ...").isEnabled());

  desk.answer("Escape");
  button("&Restore set ...").click();
  EXPECT_TRUE(desk.message.find("1 row or name that is not yet written") < desk.message.size());
  EXPECT_EQ(home.read("MAGNET/history.csv"), "lost") << "not without a yes";

  lines().setCurrentItem(lines().topLevelItem(2));
  desk.answer("Alt+Y");
  button("Restore this f&ile ...").click();
  EXPECT_EQ(home.read("MAGNET/almwatch.csv"), former.at("almwatch.csv"));
  EXPECT_EQ(home.read("MAGNET/almwatch-1700000099.csv"), "lost too") << "of no entry's second";
  EXPECT_EQ(home.read("MAGNET/history.csv"), "lost");
  EXPECT_EQ(form.PropertyList.lines().size(), 8U) << "read again";

  groups().setCurrentRow(groups().count() - 1);
  desk.answer("Alt+Y");
  button("&Restore set ...").click();
  EXPECT_EQ(home.files("MAGNET"), former);
}

TEST_F(Review, RestoresWhatIsChosenHoweverThePageChanges) {
  const std::string history = "MAGNET/history-1699999000.csv";
  const std::string alarms = "MAGNET/almwatch-1699999000.csv";
  open();
  home.write(history, "of then");
  home.write(alarms, "of then");
  desk.key("Alt+B");
  groups().setCurrentRow(1);
  lines().topLevelItem(0)->setExpanded(false);
  lines().topLevelItem(1)->setExpanded(true);
  lines().setCurrentItem(lines().topLevelItem(1));
  desk.view.review()->resize(400, 200);
  QScrollBar& bar = *lines().verticalScrollBar();
  bar.setValue(bar.maximum());
  const int place = bar.value();
  EXPECT_GT(place, 0);

  int reported = 0;
  for (const QAbstractItemView* view :
       std::initializer_list<QAbstractItemView*>{&groups(), &lines()}) {
    QObject::connect(view->selectionModel(), &QItemSelectionModel::currentChanged,
                     [&] { ++reported; });
  }
  engineer.clock.now += 2;
  comeBack();
  EXPECT_TRUE(groups().item(0)->text().contains(", 2 seconds ago"));
  EXPECT_EQ(reported, 0) << "nobody wants to hear the line once a second";

  home.write("MAGNET/history-1700000001.csv", "of a moment ago");
  home.write("MAGNET/almwatch.csv", "changed");
  comeBack();
  ASSERT_EQ(groups().count(), 3);
  EXPECT_FALSE(lines().topLevelItem(0)->isExpanded());
  EXPECT_TRUE(lines().topLevelItem(1)->isExpanded());
  EXPECT_EQ(bar.value(), place);
  desk.answer("Alt+Y");
  button("Restore this f&ile ...").click();
  EXPECT_NE(desk.message.find("history.csv as of " + localTime(1699999000)), std::string::npos);
  EXPECT_EQ(home.read("MAGNET/history.csv"), "of then");
  EXPECT_EQ(home.read("MAGNET/almwatch.csv"), "changed");

  std::filesystem::remove(home.path(history));
  comeBack();
  EXPECT_FALSE(button("Restore this f&ile ...").isEnabled());
  EXPECT_TRUE(button("&Restore set ...").isEnabled());
  std::filesystem::remove(home.path(alarms));
  comeBack();
  EXPECT_TRUE(groups().selectedItems().isEmpty());
  EXPECT_FALSE(button("&Restore set ...").isEnabled());
}

TEST_F(Review, TellsOfNamesThatARestoringReads) {
  std::filesystem::remove(home.path("MAGNET/MAGEQM-devices.csv"));
  open();
  type(form.deviceNamesInputText, "A\r\nB\r\n");
  clickAt(form.deviceNamesInputText, 0);
  form.LocalName.setText("OTHER");
  desk.key("Alt+B");
  for (const bool reported : {false, true}) {
    desk.answer("Escape");
    button("&Restore set ...").click();
    EXPECT_EQ(desk.message.find("would be dropped") < desk.message.size(), reported)
        << desk.message;
    home.write("MAGNET/MAGEQM-devices.csv", "DEVICE_NUMBER,DEVICE_NAME\r\n 0,QUAD.1\r\n");
  }
  Desk::visitAnotherWindow([&] { home.write("MAGNET/exports-1600000000.csv", ""); });
  desk.view.review()->activateWindow();
  EXPECT_TRUE(QTest::qWaitFor([&] { return groups().count() == 2; }));
  desk.view.close();
  EXPECT_FALSE(desk.view.review()->isVisible());
}

}  // namespace
}  // namespace kova::test
