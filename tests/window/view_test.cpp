// SPDX-License-Identifier: MIT
// What only the way between the controls and their widgets can break.
#include <QCheckBox>
#include <QComboBox>
#include <QDeadlineTimer>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScopeGuard>
#include <map>

#include "core/status.h"
#include "window/desk.h"

namespace kova::test {
namespace {

using Mirror = AtTheWindow;

TEST_F(Mirror, ClicksOnLinesOfTheBox) {
  const TextField& box = form.deviceNamesInputText;
  desk.write("NumDevices", "2");
  desk.write("deviceNamesInputText", "");
  EXPECT_EQ(box.text(), "Device 0\r\nDevice 1\r\n") << "they came with leaving the number";
  for (const char* line : {"ALPHA", "BETA"}) {
    desk.type(QString(line));
    desk.key("Shift+Return");
  }
  desk.type("GAMMA");
  EXPECT_EQ(box.text(), "ALPHA\r\nBETA\r\nGAMMA");

  desk.key("Tab");
  EXPECT_EQ(desk.focused(), "deviceNumberInputText");
  desk.clickLine(1);
  EXPECT_EQ(form.deviceNumberInputText.text(), " 1");
  EXPECT_EQ(box.caret(), 7) << "the new number has put it ahead of the line";
  desk.clickLine(1);
  desk.key("Left");
  EXPECT_EQ(box.caret(), 10);
  desk.key("Ctrl+A");
  desk.clickLine(2);
  EXPECT_EQ(form.deviceNumberInputText.text(), " 2") << "also in a selection";

  for (int click = 0; click < 2; ++click) desk.clickLine(1);
  const QPoint place(15, desk.box().cursorRect().center().y());
  desk.doubleClick(*desk.box().viewport(), place);
  desk.click(*desk.box().viewport(), place);
  desk.type("EAST");
  EXPECT_EQ(box.text(), "ALPHA\r\nEAST\r\nGAMMA") << "a third click takes no line end";
}

TEST_F(Mirror, AClickIsOneClickAndReachesWhatIsLive) {
  int clicks = 0;
  form.LocalName.onClick = [&] { ++clicks; };
  const QWidget& field = desk.widget("LocalName");
  desk.doubleClick(field, field.rect().center());
  EXPECT_EQ(clicks, 1);
  desk.doubleClick(field, field.rect().center(), Qt::MiddleButton);
  desk.click("LocalName");
  EXPECT_EQ(clicks, 2) << "another button swallows none";
  desk.click("Label9");
  EXPECT_EQ(desk.focused(), "MaxValue");

  desk.widget<QCheckBox>("HistoryCheck").toggle();
  EXPECT_EQ(desk.focused(), "HistoryCheck") << "also where a screen reader presses it";
  desk.click("HistoryCheck");
  desk.write("ArchiveRateText", "5");
  EXPECT_EQ(form.ArchiveRateText.text(), "10") << "its frame is disabled";
  EXPECT_EQ(desk.focused(), "HistoryCheck");
}

TEST_F(Mirror, OnlyMovesBetweenFieldsEnterAnAlarmField) {
  desk.write("almHiText", "40");
  form.almMaskText.setText("3");
  Desk::visitAnotherWindow();
  desk.key("F10 Escape Escape");
  EXPECT_EQ(desk.focused(), "almHiText");
  EXPECT_EQ(form.almMaskText.text(), "3");

  for (const char* keys : {"Tab", "Alt+H", ""}) {
    form.almMaskText.setText("3");
    if (*keys == '\0') desk.click("almHiText");
    if (*keys != '\0') desk.key(keys);
    EXPECT_EQ(form.almMaskText.text(), "0") << keys;
    desk.click("Units");
  }
}

TEST_F(Mirror, OneActOnTheListIsOneSelectionAndShowsItsRow) {
  std::vector<std::int32_t> selected;
  desk.type("MAGNET");
  form.PropertyList.onClick = [&, click = form.PropertyList.onClick] {
    selected.push_back(form.PropertyList.selectedIndex());
    click();
  };
  for (int i = 0; i < 2; ++i) desk.click(desk.list(), desk.placeOfLine(0));
  EXPECT_EQ(desk.widget<QListView>("PropertyList").selectionModel()->selectedIndexes().size(), 1);
  desk.click(desk.list(), desk.placeOfLine(3), Qt::RightButton);
  desk.key("Down Home End Up");
  EXPECT_EQ(selected, (std::vector<std::int32_t>{0, 0, 1, 0, 7, 6}));
  EXPECT_TRUE(desk.widget<QCheckBox>("HistoryCheck").isChecked());
  EXPECT_TRUE(desk.widget<QRadioButton>("propertyOption").isChecked());
  EXPECT_EQ(desk.widget<QComboBox>("ArrayTypeCombo").currentText(), QStringLiteral("CHANNEL"));
  EXPECT_EQ(desk.widget("ArrayTypeCombo").accessibleDescription(), QStringLiteral("CHANNEL"));
  EXPECT_EQ(desk.widget<QLineEdit>("Units").text(), QStringLiteral("T"));

  // A screen reader clears the selection ahead of making a new one.
  auto& view = desk.widget<QListView>("PropertyList");
  view.selectionModel()->clearSelection();
  view.selectionModel()->select(view.model()->index(2, 0), QItemSelectionModel::Select);
  EXPECT_EQ(selected.back(), 2);

  desk.doubleClick(desk.list(), desk.placeOfLine(5));
  EXPECT_EQ(selected.size(), 8);
  EXPECT_EQ(form.PropertyName.text(), "STATE");
  EXPECT_EQ(engineer.rows().properties, 7);
}

struct Painted : QObject {
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    isPainted = isPainted || event->type() == QEvent::Paint;
    return false;
  }
  bool isPainted = false;
};

TEST_F(Mirror, AnotherTextOfALineIsPaintedAndNoMarkup) {
  desk.type("MAGNET");
  QApplication::processEvents();
  Painted painted;
  desk.list().installEventFilter(&painted);
  form.PropertyList.replace(6, "[MAGNET] FIELD <b>");
  EXPECT_TRUE(QTest::qWaitFor([&] { return painted.isPainted; }));
  const QAbstractItemModel& lines = *desk.widget<QListView>("PropertyList").model();
  EXPECT_TRUE(lines.index(6, 0).data(Qt::ToolTipRole).toString().contains("&lt;b&gt;"));
}

TEST_F(Mirror, ADoubleClickRemovesNoLineThatItsFirstClickHasBrought) {
  const std::string row = ",P,1,short,0,NULL,1,READ,1,x,0\r\n";
  home.write("A/exports.csv", exportHeaderLine() + "MAGNET,M" + row + "A,L" + row);
  desk.type("A");
  desk.doubleClick(desk.list(), desk.placeOfLine(0));
  EXPECT_EQ(engineer.rows().properties, 8);
}

TEST_F(Mirror, TheMenuPopsUpOnItsFrameAlone) {
  for (const std::string name : {"Frame2", "Label1", "ExportName", "Frame1"}) {
    desk.click(desk.widget(name), {3, name.starts_with("Frame") ? 40 : 5}, Qt::RightButton);
    QWidget* popup = QApplication::activePopupWidget();
    const bool guide = popup != nullptr && popup->objectName() == QStringLiteral("guide");
    EXPECT_EQ(guide, name == "Frame2") << name;
    if (popup != nullptr) popup->close();
  }
}

TEST_F(Mirror, TheDialogWorksByKeysAlone) {
  desk.key("F10 Return");
  EXPECT_EQ(desk.focused(), "nextParam");
  const auto* next = desk.view.helper().findChild<QPushButton*>(QStringLiteral("nextParam"));
  EXPECT_TRUE(next->isDefault());
  desk.type("LOST");
  EXPECT_EQ(desk.focused(), "ParamText");
  EXPECT_EQ(engineer.field("ParamText").text(), "LOST");
  desk.key("Escape");
  EXPECT_EQ(desk.focused(), "ExportName");
  EXPECT_EQ(form.ExportName.text(), "");

  desk.key("Menu Return Tab Tab");
  desk.type("MAGNET");
  desk.key("Return Alt+B");
  EXPECT_EQ(engineer.field("ParamText").text(), "MAGNET");
  desk.key("Return Return Return");
  EXPECT_EQ(desk.focused(), "ExportName");
  EXPECT_EQ(form.ExportName.text(), "MAGNET");
  EXPECT_EQ(form.NumDevices.text(), "1");
}

TEST_F(Mirror, TextsSurviveAndWhatTheCodePageLacksIsAQuestionMark) {
  const std::string longest(40000, 'x');
  for (TextField* field : {&form.deviceNamesInputText, &form.PropertyDescription}) {
    for (const auto& text : {longest, {"\xA0x\xA0 "}, {"\x80\x81\xFF"}, {"a\nb"}, {"<b>&lt;&"}}) {
      field->setText(text);
      EXPECT_EQ(field->caret(), 0);
      field->setFocus();
      desk.key(field == &form.PropertyDescription ? "End" : "Ctrl+End");
      desk.type(QStringLiteral("\u20AC\u2192\U0001F600"));
      desk.key("Left");
      desk.type("!");
      EXPECT_EQ(field->text(), text + "\x80?!?");
      EXPECT_EQ(field->caret(), text.size() + 3);
    }
  }
  const QString shown = QStringLiteral("<b>&lt;&\u20AC?!?");
  EXPECT_EQ(desk.widget<QLineEdit>("PropertyDescription").text(), shown);
  EXPECT_EQ(desk.box().toPlainText(), shown);
}

TEST_F(Mirror, WhatAnInputMethodCommitsStaysAndCanBeUndone) {
  for (TextField* field : {&form.PropertyDescription, &form.deviceNamesInputText}) {
    field->setText("ab");
    field->setFocus();
    desk.key("Home Right");
    desk.compose(QStringLiteral("´"), QString());
    EXPECT_EQ(field->text(), "ab") << "nothing is committed yet";
    desk.compose(QString(), QStringLiteral("日本"));
    EXPECT_EQ(field->text(), "a??b") << "what the code page lacks";
    EXPECT_EQ(field->caret(), 3);

    field->setText("");
    desk.compose(QString(), QStringLiteral("é"));
    desk.type("t");
    desk.key("Ctrl+Z Ctrl+Z");
    EXPECT_EQ(field->text(), "");
    desk.key("Ctrl+Shift+Z Ctrl+Shift+Z");
    EXPECT_EQ(field->text(), "\xE9t");
    EXPECT_EQ(field->caret(), 2);
  }
}

TEST_F(Mirror, EachControlHasALetterOfItsOwn) {
  std::map<QString, int> letters{{"Alt+G", 1}};
  for (const auto& [design, control] : designedControls(form)) {
    const QWidget& widget = desk.widget(std::string(design->name));
    if (qobject_cast<const QLineEdit*>(&widget) != nullptr) continue;
    const auto letter = QKeySequence::mnemonic(widget.property("text").toString()).toString();
    if (letter.isEmpty()) continue;
    EXPECT_EQ(++letters[letter], 1) << letter.toStdString();
  }
  EXPECT_EQ(letters.size(), 25);
}

TEST_F(Mirror, MessagesAreAnsweredByKeysAndTheLastOneEndsTheProgram) {
  EXPECT_EQ(desk.view.windowTitle(), QStringLiteral("KOVA Device Server Setup Wizard"));
  const auto visit = [](const QWidget& box) {
    const auto* text = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
    EXPECT_EQ(text->textFormat(), Qt::PlainText);
  };
  untilTheEnd(desk, [&] {
    desk.answer("Return", visit);
    desk.click("EditCmd");
    EXPECT_EQ(desk.message, "KOVA Device Server Setup Wizard: Not a valid Export Name");
    for (const char* keys : {"Return", "Escape", "Tab Space"}) {
      EXPECT_FALSE(engineer.program.wizard.state.quitInProgress);
      desk.answer(keys);
      desk.click("Command1");
    }
  });
  desk.write("PropertyName", "LATE");
  EXPECT_EQ(form.PropertyName.text(), "");
}

TEST_F(Mirror, TheProcessLivesUntilItsLastWindowHasClosed) {
  QApplication::setQuitOnLastWindowClosed(true);
  const auto restore = qScopeGuard([] { QApplication::setQuitOnLastWindowClosed(false); });
  bool dialogStayed = false;
  const auto closeDialog = [&] {
    dialogStayed = desk.view.helper().isVisible() && !desk.view.isVisible();
    QTest::keyClick(&desk.view.helper(), Qt::Key_Escape);
  };
  untilTheEnd(desk, [&] {
    form.srvGuide.click();
    desk.view.close();
    // Had the process ended with its main window, its loop would not come to a second turn.
    desk.soon([&] { desk.soon(closeDialog); });
  });
  EXPECT_TRUE(dialogStayed);
  EXPECT_FALSE(form.window.loaded());
}

TEST_F(Mirror, TheWheelTurnsNothingInPassing) {
  QWidget& list = desk.widget("InputDataFormat");
  const QPoint middle = list.rect().center();
  QWheelEvent wheel(middle, list.mapToGlobal(middle), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                    Qt::NoScrollPhase, false);
  QApplication::sendEvent(&list, &wheel);
  EXPECT_EQ(form.InputDataFormat.text(), "NULL");
  EXPECT_EQ(desk.focused(), "ExportName");
}

TEST_F(Mirror, ATextThatWouldBeCutIsMarkedInTheColoursOfTheDesktop) {
  const QWidget& field = desk.widget("LocalName");
  const auto visit = [&] {
    return std::pair(field.palette().color(QPalette::Base), field.accessibleDescription());
  };
  const auto plain = visit();
  form.LocalName.onChange = {};  // its message
  desk.write("LocalName", "LONGNAME");
  EXPECT_TRUE(QTest::qWaitFor([&] { return visit().second != plain.second; }));
  EXPECT_NE(visit().first, plain.first);
  EXPECT_GT(desk.widget<QLineEdit>("LocalName").textMargins().right(), 0) << "room for the sign";

  QPalette dark = palette;
  dark.setColor(QPalette::Base, Qt::black);
  QApplication::setPalette(dark);
  EXPECT_TRUE(QTest::qWaitFor([&] { return visit().first.lightness() < 100; }));
  EXPECT_NE(visit().first, QColor(Qt::black)) << "still marked";
  const auto& box = desk.box();
  EXPECT_LT(box.extraSelections().front().format.background().color().lightness(), 100);

  desk.write("LocalName", "SHORT");
  const auto unmarked = std::pair(QColor(Qt::black), plain.second);
  EXPECT_TRUE(QTest::qWaitFor([&] { return visit() == unmarked; }));
}

TEST_F(Mirror, ALongActTellsHowFarItIsAndTakesBothBack) {
  const auto* line = desk.view.findChild<QLabel*>(QStringLiteral("statusLine"));
  const QString before = line->text();
  EXPECT_EQ(before.toStdString(), statusText(engineer.program.wizard));

  std::size_t files = 0;
  const QDeadlineTimer late(20000);
  while (QApplication::overrideCursor() == nullptr && !late.hasExpired()) {
    engineer.program.wizard.progress(++files);
  }
  EXPECT_EQ(line->text(), QStringLiteral("%1 files done ...").arg(files));

  EXPECT_TRUE(QTest::qWaitFor([&] { return line->text() == before; }));
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

}  // namespace
}  // namespace kova::test

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  return RUN_ALL_TESTS();
}
