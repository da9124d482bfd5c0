// SPDX-License-Identifier: MIT
// Undo and redo at the real window: what a step is, what takes it back, and what then shows.
#include <QImage>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>

#include "window/desk.h"

namespace kova::test {
namespace {

struct Undo : AtTheWindow {
  Undo() { settle(); }
  void key(const QString& names) {
    desk.key(names);
    settle();
  }
  std::vector<std::string> steps() const {
    std::vector<std::string> names;
    for (const Step& step : desk.view.undo().history().steps()) names.push_back(step.name);
    return names;
  }
  void open() {
    desk.type("MAGNET");
    settle();
  }
  void selectLine(int row) {
    desk.click(desk.list(), desk.placeOfLine(row));
    settle();
  }
};

TEST_F(Undo, AStepIsAUserActionThatChangedTheProject) {
  using Names = std::vector<std::string>;
  open();
  EXPECT_EQ(steps(), Names{"Open MAGNET"});
  selectLine(5);
  EXPECT_EQ(steps().back(), "Select STATE") << "its alarm watch was looked up";
  selectLine(7);
  const std::size_t selected = steps().size();
  selectLine(5);
  EXPECT_EQ(steps().size(), selected) << "a space before a number is no change";
  key("Alt+R");
  EXPECT_EQ(steps().back(), "Remove STATE");
  desk.write("PropertyName", "NEW");
  desk.write("PropertyDescription", "typed before the step");
  desk.answer("Return");
  key("Alt+A");
  EXPECT_EQ(steps().back(), "Add NEW");
  const std::string description = form.PropertyDescription.text();
  desk.write("ExportName", "M");
  desk.type("A");
  settle();
  EXPECT_EQ(steps().back(), "8 rows dropped by the change of directory");
  EXPECT_EQ(desk.widget<QPushButton>("AddProperty").window(), &desk.view);

  auto& button = *desk.view.undo().undoButton();
  EXPECT_EQ(button.accessibleName(), "Undo: 8 rows dropped by the change of directory");
  key("Ctrl+Z");
  EXPECT_EQ(engineer.rows().properties, 8) << "in Export Name it is the session's undo";
  EXPECT_EQ(form.ExportName.text(), "MAGNET");
  EXPECT_EQ(desk.focused(), "ExportName");
  const auto spoken = [this] {
    return desk.view.findChild<QLabel*>("statusLine")->accessibleName();
  };
  EXPECT_TRUE(QTest::qWaitFor([&] {
    return spoken().startsWith("Undone: 8 rows dropped by the change of directory. ");
  })) << spoken().toStdString();
  desk.click(button, button.rect().center());
  EXPECT_EQ(desk.focused(), "ExportName");
  EXPECT_EQ(form.PropertyDescription.text(), "typed before the step");
  EXPECT_EQ(engineer.rows().properties, 7);
  key("Alt+1");
  EXPECT_EQ(engineer.rows().properties, 8);
  EXPECT_EQ(button.accessibleName(), QString::fromStdString("Undo: " + steps()[selected - 1]));
  key("Alt+2");
  key("Alt+2");
  EXPECT_EQ(form.PropertyDescription.text(), description);
  EXPECT_EQ(engineer.rows().properties, 8);
  key("Ctrl+Shift+Z");
  EXPECT_EQ(engineer.rows().properties, 0);
  EXPECT_FALSE(desk.view.undo().redoButton()->isEnabled());
}

TEST_F(Undo, FieldsKeepTheirOwnUndoWhichStartsAgainAfterAStepBack) {
  open();
  selectLine(7);
  auto& field = desk.widget<QLineEdit>("PropertyDescription");
  desk.write("PropertyDescription", "typed");
  key("Ctrl+Z");
  EXPECT_NE(form.PropertyDescription.text(), "typed");
  EXPECT_EQ(engineer.rows().properties, 8) << "the session stays";
  desk.write("PropertyDescription", "typed");
  key("Alt+R");
  key("Alt+1");
  EXPECT_EQ(form.PropertyDescription.text(), "typed");
  EXPECT_FALSE(field.isUndoAvailable());
}

TEST_F(Undo, KeysInOneFieldAreOneStep) {
  open();
  const std::string devices = form.NumDevices.text();
  const std::size_t before = steps().size();
  desk.write("NumDevices", "2");
  settle();
  desk.type("0");
  settle();
  EXPECT_EQ(steps().back(), "Number of devices 20");
  EXPECT_EQ(steps().size(), before + 1);
  key("Alt+1");
  EXPECT_EQ(form.NumDevices.text(), devices);
  EXPECT_TRUE(desk.view.undo().redoButton()->isEnabled());
  desk.write("NumDevices", "3");
  settle();
  EXPECT_FALSE(desk.view.undo().redoButton()->isEnabled()) << "another action took its place";
  desk.key("Tab Shift+Tab");
  desk.write("NumDevices", "5");
  settle();
  EXPECT_EQ(steps().size(), before + 2) << "the focus has left it in between";
  key("Alt+R");
  EXPECT_EQ(steps().size(), before + 3) << "an access key is not typing";
}

TEST_F(Undo, ShowsEveryLineAgainAndKeepsTheFocus) {
  open();
  selectLine(7);
  form.AlarmWatchCheck.setValue(1);
  settle();
  const QImage before = desk.list().grab().toImage();
  key("Alt+R");
  selectLine(2);
  key("Alt+R");
  while (desk.view.undo().undoButton()->accessibleName() != "Undo: Select CURRENT") key("Alt+1");
  const QImage after = desk.list().grab().toImage();
  // Above the selected line, which shows where the focus is.
  const QRect both(0, 0, before.width(), desk.placeOfLine(6).y());
  EXPECT_EQ(after.copy(both), before.copy(both));

  desk.click("almHiText");
  key("Alt+R");
  form.AlarmWatchCheck.setValue(0);
  key("Alt+1");
  desk.click("almHiText");
  key("Alt+2");
  EXPECT_NE(desk.focused(), "nothing");
  EXPECT_TRUE(QApplication::focusWidget()->isEnabled());
}

TEST_F(Undo, TheGuidedDialogIsOneStepAndKeepsItsWindow) {
  form.srvGuide.click();
  settle();
  auto& box = *desk.view.helper().findChild<QLineEdit*>("ParamText");
  EXPECT_TRUE(QTest::qWaitForWindowActive(&desk.view.helper()));
  box.setFocus();
  desk.type("MAGNET");
  for (int step = 0; step < 3; ++step) key("Return");
  EXPECT_EQ(engineer.rows().properties, 8);
  EXPECT_EQ(steps(), std::vector<std::string>{"Open MAGNET"});
  desk.view.undo().undo();
  EXPECT_EQ(engineer.rows().properties, 0);
  EXPECT_EQ(form.ExportName.text(), "");
}

TEST_F(Undo, ReviewListsTheStepsAndGoesBackAndItsOwnAreSteps) {
  open();
  selectLine(5);
  key("Alt+R");
  selectLine(5);
  key("Alt+R");
  ReviewWindow& review = desk.openReview();
  key("Alt+S");
  auto& list = *review.currentWidget()->findChild<QListWidget*>();
  ASSERT_TRUE(list.item(0)->text().endsWith("Remove FIELD"));
  list.setFocus();
  while (!list.currentItem()->text().endsWith("Remove STATE")) key("Down");
  key("Return");
  EXPECT_EQ(desk.view.undo().history().undoStep()->name, "Select STATE");
  EXPECT_TRUE(QTest::qWaitFor([&] { return list.item(0)->text().endsWith("(undone)"); }));
  key("Alt+O");
  key("Alt+D");
  ASSERT_TRUE(QTest::qWaitFor([&] {
    settle();
    return steps().back() == "Delete row of FIELD";
  }));
  EXPECT_EQ(engineer.rows().history, 1);
  desk.view.undo().undo();
  EXPECT_EQ(engineer.rows().history, 2);
}

}  // namespace
}  // namespace kova::test
