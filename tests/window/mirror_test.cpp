// SPDX-License-Identifier: MIT
// What only the way between the controls and their widgets can break.
#include <QLineEdit>
#include <filesystem>
#include <map>

#include "window/desk.h"

namespace kova::test {
namespace {

const CodePage page = CodePage::windows1252();

struct Mirror : testing::Test {
  Mirror() { std::filesystem::copy(KOVA_EXAMPLE, home.path("MAGNET")); }
  TemporaryFolder home;
  Engineer engineer{home.path()};
  Form1& form = engineer.program.wizard.form;
  Desk desk{engineer.program, page, &engineer};
};

TEST_F(Mirror, ClicksOnLinesOfTheBox) {
  desk.play(R"(
      write deviceNamesInputText ALPHA; key Return; type BETA; key Return; type GAMMA
      shows deviceNamesInputText ALPHA\r\nBETA\r\nGAMMA; at deviceNamesInputText 18
      spot 8; shows deviceNumberInputText  1; at deviceNamesInputText 7
      spot 8; shows deviceNumberInputText  1; at deviceNamesInputText 9; key Right
      at deviceNamesInputText 10; write deviceNumberInputText 2; at deviceNamesInputText 13)");
}

TEST_F(Mirror, ADoubleClickIsOneClickAndALabelPassesItsOwnOn) {
  int clicks = 0;
  form.LocalName.onClick = [&] { ++clicks; };
  desk.play("double LocalName; click Label9; focused MaxValue");
  EXPECT_EQ(clicks, 1);
}

TEST_F(Mirror, OnlyMovesBetweenFieldsEnterAnAlarmField) {
  desk.play("write almHiText 40; key Tab; focused almLoText; key Shift+Tab");
  form.almMaskText.setText("3");
  desk.play("away; key F10 Escape Escape; focused almHiText; shows almMaskText 3");
  for (const char* act : {"key Tab", "click almHiText", "key Alt+H"}) {
    form.almMaskText.setText("3");
    desk.play(std::string(act) + "; shows almMaskText 0; click Units");
  }
  desk.play("shows almHiText 40; click almNormalText; shows almHiText 0");
}

TEST_F(Mirror, ADisabledFrameTakesNoInput) {
  desk.play(R"(
      click HistoryCheck; click HistoryCheck; write ArchiveRateText 5; shows ArchiveRateText 10
      focused HistoryCheck)");
}

TEST_F(Mirror, OneActOnTheListIsOneSelection) {
  int selections = 0;
  desk.play("type MAGNET");
  form.PropertyList.onClick = [&, click = form.PropertyList.onClick] { ++selections, click(); };
  desk.play("line 2; shows PropertyList 2; line 2; key Down; shows PropertyList 3");
  desk.play("key Home; shows PropertyList 0; key End; key Down; shows PropertyList 7");
  EXPECT_EQ(selections, 5);
  desk.play("double PropertyList 5; shows PropertyName STATE; shows PropertyList -1; counts 7 2 2");
  EXPECT_EQ(selections, 6);
}

TEST_F(Mirror, TheMenuPopsUpOnItsFrameAlone) {
  desk.play("right Frame2 3 40 opens; right Label1 5 5; right ExportName 5 5; right Frame1 3 40");
}

TEST_F(Mirror, TheDialogWorksByKeysAlone) {
  desk.play(R"(
      key F10 Return; focused nextParam; key Tab Tab; focused ParamText; type LOST; key Escape
      focused ExportName; shows ExportName; key F10 Return Tab Tab; type MAGNET; key Return Alt+B
      shows ParamText MAGNET; key Return Return Return; focused ExportName
      shows ExportName MAGNET; shows LocalName MAGEQM; shows NumDevices 1)");
}

TEST_F(Mirror, TextsSurviveAndWhatTheCodePageLacksIsAQuestionMark) {
  for (const char* name : {"PropertyDescription", "deviceNamesInputText"}) {
    TextField& field = engineer.field(name);
    for (const std::string text : {"\xA0x\xA0 ", "\x80\x81\xFF", "a\nb", "<b>&lt;&"}) {
      field.setText(text);
      field.setFocus();
      desk.key(&field == &form.PropertyDescription ? "End" : "Ctrl+End");
      desk.type(QStringLiteral("\u20AC\u2192\U0001F600"));
      desk.play("key Left; type !");
      EXPECT_EQ(field.text(), text + "\x80?!?");
      EXPECT_EQ(field.caret(), text.size() + 3);
    }
  }
  auto* line = static_cast<QLineEdit*>(desk.view.widget("PropertyDescription"));
  EXPECT_EQ(line->text(), QStringLiteral("<b>&lt;&\u20AC?!?"));
}

TEST_F(Mirror, WhatAnInputMethodCommitsStays) {
  for (TextField* field : {&form.PropertyDescription, &form.deviceNamesInputText}) {
    field->setText("ab");
    field->setFocus();
    desk.key("Home");
    desk.key("Right");

    desk.compose(QStringLiteral("´"), QString());
    EXPECT_EQ(field->text(), "ab") << "nothing is committed yet";
    desk.compose(QString(), QStringLiteral("é"));
    EXPECT_EQ(field->text(), std::string("a\xE9") + "b");
    EXPECT_EQ(field->caret(), 2u);

    desk.compose(QString(), QStringLiteral("日本"));
    EXPECT_EQ(field->text(), "a\xE9??b") << "what the code page lacks";
    EXPECT_EQ(field->caret(), 4u);
  }
}

TEST_F(Mirror, UndoAndRedoReachTheModel) {
  for (TextField* field : {&form.PropertyDescription, &form.deviceNamesInputText}) {
    field->setText("");
    field->setFocus();
    desk.compose(QString(), QStringLiteral("é"));
    desk.type("t");

    for (int undo = 0; undo < 2; ++undo) desk.key("Ctrl+Z");
    EXPECT_EQ(field->text(), "");

    for (int redo = 0; redo < 2; ++redo) desk.key("Ctrl+Shift+Z");
    EXPECT_EQ(field->text(), "\xE9t");
    EXPECT_EQ(field->caret(), 2u);
  }
}

TEST_F(Mirror, TabGoesByTheIndexAndAltByLettersOfTheirOwn) {
  std::map<int, std::string> order;
  std::map<QString, int> letters{{"Alt+G", 1}};
  for (const auto& row : form1Design()) {
    const std::string name(row.design.name);
    const QWidget* widget = desk.view.widget(name);
    if (widget->focusPolicy() != Qt::NoFocus && widget->isEnabled())
      order[row.design.tabIndex] = name;
    if (qobject_cast<const QLineEdit*>(widget) != nullptr) continue;
    const auto letter = QKeySequence::mnemonic(widget->property("text").toString()).toString();
    if (!letter.isEmpty()) ++letters[letter];
  }
  EXPECT_EQ(order.size(), 46u);
  EXPECT_EQ(letters.size(), 25u);
  for (const auto& [letter, uses] : letters) EXPECT_EQ(uses, 1) << letter.toStdString();
  for (const auto& [index, name] : order) desk.play("focused " + name + "; key Tab");
  desk.play("focused ExportName");
}

TEST_F(Mirror, TheProcessLivesUntilItsLastWindowHasClosed) {
  QApplication::setQuitOnLastWindowClosed(true);
  bool dialogStayed = false;
  untilTheEnd(desk, [&] {
    form.srvGuide.click();
    desk.view.close();
    desk.soon(50, [&] {
      dialogStayed = desk.view.helper().isVisible() && !desk.view.isVisible();
      QTest::keyClick(&desk.view.helper(), Qt::Key_Escape);
    });
  });
  EXPECT_TRUE(dialogStayed);
  QApplication::setQuitOnLastWindowClosed(false);
}

TEST_F(Mirror, LabelsBesideAFrameKeepPaceWithItsFields) {
  const QFont before = QApplication::font();
  const auto middle = [&](const char* name) {
    const QWidget* widget = desk.view.widget(name);
    return widget->mapTo(&desk.view, widget->rect().center()).y();
  };
  for (int size = 8; size <= 18; size += 5) {
    QFont font = before;
    font.setPointSize(size);
    QApplication::setFont(font);
    EXPECT_TRUE(QTest::qWaitFor([&] {
      return desk.view.widget("Label5")->height() >= QFontMetrics(font).height() &&
             std::abs(middle("Label7") - middle("InputDataFormat")) <= 1 &&
             std::abs(middle("Label5") - middle("OutputDataSize")) <= 1;
    })) << size;
  }
  QApplication::setFont(before);
}

TEST_F(Mirror, TheWheelTurnsNothingInPassing) {
  QWidget* list = desk.view.widget("InputDataFormat");
  QWheelEvent wheel(list->rect().center(), list->mapToGlobal(list->rect().center()), {}, {0, 120},
                    Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(list, &wheel);
  desk.play("shows InputDataFormat NULL; focused ExportName");
}

TEST_F(Mirror, ATextThatWouldBeCutIsMarked) {
  const QWidget* field = desk.view.widget("LocalName");
  const auto look = [&] {
    QTest::qWait(1);
    return std::pair(field->palette().color(QPalette::Base), field->accessibleDescription());
  };
  const auto plain = look();
  desk.play("write LocalName LONGNAME");
  EXPECT_NE(look().first, plain.first);
  EXPECT_NE(look().second, plain.second);
  desk.play("write LocalName SHORT");
  EXPECT_EQ(look(), plain);
}

}  // namespace
}  // namespace kova::test
