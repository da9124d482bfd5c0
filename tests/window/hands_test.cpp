// SPDX-License-Identifier: MIT
// What the toolkit does with hands otherwise than an engineer means it.
#include <QClipboard>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>

#include "desktop/message_boxes.h"
#include "window/desk.h"

namespace kova::test {
namespace {

struct Hands : AtTheWindow {
  /// Holds a key down until it has repeated itself twice.
  static void hold(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    for (const bool repeated : {false, true, true}) {
      QWindow* window = QGuiApplication::focusWindow();
      QTest::simulateEvent(window, true, key, modifiers, textOf(key), repeated);
      QTest::simulateEvent(window, false, key, modifiers, textOf(key), !repeated);
    }
  }
  /// As an X server reports it to a toolkit that has no time to look for repeats.
  void holdInPairs(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    for (int presses = 0; presses < 3; ++presses) {
      QWindow* window = QGuiApplication::focusWindow();
      const bool taken = qt_sendShortcutOverrideEvent(window, time, key, modifiers, textOf(key));
      if (!taken) send(*window, QEvent::KeyPress, key, modifiers);
      time += 40;
      send(*QGuiApplication::focusWindow(), QEvent::KeyRelease, key, modifiers);
    }
    time += 40;
  }
  void send(QWindow& window, QEvent::Type type, Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QKeyEvent event(type, key, modifiers, textOf(key));
    event.setTimestamp(time);
    QCoreApplication::sendEvent(&window, &event);
  }
  static QString textOf(Qt::Key key) {
    if (key > Qt::Key_AsciiTilde) return key == Qt::Key_Return ? QStringLiteral("\r") : QString();
    return QString(QChar(key)).toLower();
  }

  quint64 time = 1000000;
};

TEST_F(Hands, AClickCountsWhereItLandsAlsoInASelection) {
  form.deviceNamesInputText.setText("NORTH\r\nEAST\r\nWEST");
  desk.clickLine(0);
  desk.key("Ctrl+A");
  desk.clickLine(2);
  EXPECT_EQ(form.deviceNumberInputText.text(), " 2");
}

TEST_F(Hands, AButtonTakesAClickOnItsLastVisibleLine) {
  int clicks = 0;
  form.Command1.onClick = [&] { ++clicks; };
  const QWidget& button = desk.widget("Command1");
  auto& area = *desk.view.findChild<QScrollArea*>();
  desk.view.resize(desk.view.width(), desk.view.height() / 2);
  area.verticalScrollBar()->setValue(button.y() + 3 - area.viewport()->height());
  desk.click(button, {button.width() / 2, 1});
  EXPECT_EQ(clicks, 1);
}

TEST_F(Hands, ALetterWithAltIsNeverText) {
  desk.key("F10 Return Tab Tab Return Return");
  EXPECT_EQ(engineer.field("ParamText").text(), "1");
  desk.key("Alt+N");
  EXPECT_EQ(engineer.field("ParamText").text(), "1");
  desk.key("Escape");
  desk.click("deviceNamesInputText");
  desk.key("Alt+J");
  EXPECT_EQ(form.deviceNamesInputText.text(), "Device 0");
}

TEST_F(Hands, APressAheadOfTheWindowLeavesTheFormerField) {
  const auto pressFromAnotherWindow = [&](const std::string& name) {
    Desk::visitAnotherWindow([&] { desk.click(name); });
  };
  desk.write("NumDevices", "3");
  pressFromAnotherWindow("almMaskText");
  EXPECT_EQ(form.deviceNamesInputText.text(), "Device 0\r\nDevice 1\r\nDevice 2\r\n");
  form.almHiText.setText("40");
  EXPECT_EQ(desk.focused(), "almMaskText");
  EXPECT_EQ(form.almHiText.text(), "40") << "it had the focus already";
  pressFromAnotherWindow("HistoryCheck");
  pressFromAnotherWindow("almMaskText");
  EXPECT_EQ(form.almHiText.text(), "0");
}

TEST_F(Hands, AHeldKeyIsOneAct) {
  int adds = 0;
  form.AddProperty.onClick = [&] { ++adds; };
  hold(Qt::Key_A, Qt::AltModifier);
  EXPECT_EQ(adds, 1);
  hold(Qt::Key_Return);
  EXPECT_EQ(adds, 2);
  hold(Qt::Key_Space);
  EXPECT_EQ(adds, 3);
  form.deviceNamesInputText.setText("");
  desk.click("deviceNamesInputText");
  hold(Qt::Key_Return);
  EXPECT_EQ(form.deviceNamesInputText.text(), "\r\n\r\n\r\n") << "but in a text of lines";

  desk.key("F10 Return Tab Tab");
  hold(Qt::Key_Return);
  EXPECT_EQ(engineer.program.helper.paramIndex, 1);
}

TEST_F(Hands, AHeldKeyIsOneActAlsoWhereItsRepeatsLookLikePresses) {
  HeldKeys held(true);
  qApp->installEventFilter(&held);
  int acts = 0;
  form.EditCmd.onClick = form.HistoryCheck.onClick = [&] { ++acts; };
  const auto actsOf = [&](Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    holdInPairs(key, modifiers);
    return std::exchange(acts, 0);
  };
  EXPECT_EQ(actsOf(Qt::Key_E, Qt::AltModifier), 1);
  EXPECT_EQ(actsOf(Qt::Key_Return), 1);
  EXPECT_EQ(actsOf(Qt::Key_Return), 1) << "let go and pressed again";
  EXPECT_EQ(actsOf(Qt::Key_K, Qt::AltModifier), 1);
  EXPECT_EQ(actsOf(Qt::Key_Space), 1);
  desk.write("PropertyDescription", "");
  holdInPairs(Qt::Key_Space);
  holdInPairs(Qt::Key_X);
  holdInPairs(Qt::Key_Backspace);
  EXPECT_EQ(form.PropertyDescription.text(), "   ");
  desk.click("deviceNamesInputText");
  desk.key("Ctrl+A");
  holdInPairs(Qt::Key_Return);
  EXPECT_EQ(form.deviceNamesInputText.text(), "\r\n\r\n\r\n");
}

TEST_F(Hands, AKeyHeldFromBeforeAnswersNoMessage) {
  const MessageBox ask = messageBoxes(desk.view, page, "Wizard");
  desk.soon([&] {
    QWidget* box = QApplication::activeModalWidget();
    EXPECT_TRUE(QTest::qWaitFor([&] { return box->isActiveWindow(); }));
    QTest::simulateEvent(box->windowHandle(), true, Qt::Key_Return, {}, "\r", true);
    desk.key("Escape");
  });
  EXPECT_EQ(ask({.text = "Sure?", .buttons = Buttons::okCancel}), Answer::cancel);
}

TEST_F(Hands, TheDialogTakesWhatIsTypedAndStaysInSight) {
  desk.key("F10 Return");
  desk.type("Mag");
  EXPECT_EQ(engineer.field("ParamText").text(), "Mag");
  EXPECT_EQ(desk.focused(), "ParamText");
  GuidedDialogView& dialog = desk.view.helper();
  EXPECT_EQ(dialog.windowHandle()->transientParent(), desk.view.windowHandle());
  dialog.showMinimized();
  form.srvGuide.click();
  EXPECT_FALSE(dialog.isMinimized());
  desk.view.close();
  EXPECT_EQ(dialog.windowHandle()->transientParent(), nullptr) << "it lives on alone";
  dialog.close();
}

TEST_F(Hands, AThirdClickSelectsANameWithoutItsLineEnd) {
  auto& edit = desk.widget<QPlainTextEdit>("deviceNamesInputText");
  desk.write("NumDevices", "2");
  desk.click("Units");
  desk.clickLine(1);
  desk.clickLine(1);
  desk.doubleClick(*edit.viewport(), {15, edit.cursorRect().center().y()});
  desk.click(*edit.viewport(), {15, edit.cursorRect().center().y()});
  desk.type("EAST");
  EXPECT_EQ(form.deviceNamesInputText.text(), "Device 0\r\nEAST\r\n");
}

TEST_F(Hands, TheBoxShowsItsBarAndTheLineOfTheCaret) {
  auto& edit = desk.widget<QPlainTextEdit>("deviceNamesInputText");
  EXPECT_TRUE(edit.verticalScrollBar()->isVisible());
  desk.write("NumDevices", "2");
  desk.click("Units");
  const auto colourOfLine = [&](int line) {
    const QRect place = edit.cursorRect(QTextCursor(edit.document()->findBlockByNumber(line)));
    return edit.viewport()->grab().toImage().pixelColor(edit.viewport()->width() - 20,
                                                        place.center().y());
  };
  for (const int line : {0, 1}) {
    desk.clickLine(line);
    desk.clickLine(line);
    EXPECT_NE(colourOfLine(line), colourOfLine(2));
    EXPECT_EQ(colourOfLine(1 - line), colourOfLine(2));
  }
  form.deviceNamesInputText.setText(QByteArray("A\r\n").repeated(100).toStdString());
  desk.write("deviceNumberInputText", "90");
  EXPECT_TRUE(edit.viewport()->rect().contains(edit.cursorRect()));
  EXPECT_EQ(edit.textCursor().blockNumber(), 90);
}

TEST_F(Hands, APasteThatIsCutCanBeUndone) {
  QGuiApplication::clipboard()->setText(QStringLiteral("one\ntwo"));
  desk.write("PropertyDescription", "ab");
  desk.key("Left Ctrl+V");
  EXPECT_EQ(form.PropertyDescription.text(), "aoneb");
  EXPECT_EQ(form.PropertyDescription.caret(), 4);
  desk.key("Ctrl+Z");
  EXPECT_EQ(form.PropertyDescription.text(), "ab");
  desk.key("Ctrl+Shift+Z");
  EXPECT_EQ(form.PropertyDescription.text(), "aoneb");
  desk.key("Ctrl+A Ctrl+V");
  EXPECT_EQ(form.PropertyDescription.text(), "one");
}

TEST_F(Hands, ARefusalLeadsToTheFieldThatItNames) {
  engineer.program.wizard.messageBox = messageBoxes(desk.view, page, "Wizard");
  const auto edit = [&] {
    desk.answer("Return");
    desk.key("Alt+E");
  };
  for (const char* name : {"ExportName", "PropertyName"}) {
    edit();
    EXPECT_EQ(desk.focused(), name);
    desk.type("PUMPS");
  }
  desk.click("AlarmWatchCheck");
  desk.write("almSeverityText", "high");
  edit();
  desk.type("7");
  EXPECT_EQ(form.almSeverityText.text(), "7");
  desk.write("almHiText", "1E39");
  form.almMaskText.setText("40");
  edit();
  EXPECT_EQ(desk.focused(), "EditCmd");
  EXPECT_EQ(form.almMaskText.text(), "40");
}

TEST_F(Hands, TheForcedNumberOfStepsGivesWayToWhatIsTyped) {
  desk.click("ProcessCheck");
  desk.key("Tab");
  desk.type("3");
  EXPECT_EQ(form.NumStepsText.text(), "3");
  for (const QString emptied : {"Backspace", "Ctrl+A Delete"}) {
    desk.key(emptied);
    EXPECT_EQ(form.NumStepsText.text(), "1");
    desk.type("03");
    EXPECT_EQ(form.NumStepsText.text(), "3");
  }
}

TEST_F(Hands, TypingInTheListFindsAName) {
  desk.type("MAGNET");
  desk.widget("PropertyList").setFocus();
  desk.type("ra");
  EXPECT_EQ(form.PropertyName.text(), "RAMP.START");
  desk.type("mp.r");
  EXPECT_EQ(form.PropertyName.text(), "RAMP.RESUME");
  QTest::qWait(1100);
  desk.type("f");
  EXPECT_EQ(form.PropertyName.text(), "FIELD");
}

TEST_F(Hands, TheListGoesOnWhereALineWasRemoved) {
  desk.type("MAGNET");
  for (const QString key : {"Up", "Down"}) {
    desk.click(desk.list(), desk.placeOfLine(5));
    form.RemoveProperty.click();
    desk.key(key);
    EXPECT_EQ(form.PropertyList.selectedIndex(), 5);
  }
  desk.click(desk.list(), desk.placeOfLine(5));
  form.RemoveProperty.click();
  desk.key("Down");
  EXPECT_EQ(form.PropertyList.selectedIndex(), 4) << "it was the last line";
}

TEST_F(Hands, AMessageTakesAnyTextOfATableAtOnce) {
  const MessageBox ask = messageBoxes(desk.view, page, "Wizard");
  for (const char* piece : {"x", "ab "}) {
    const QString text = QString::fromLatin1(QByteArray(piece).repeated(32767).left(32767));
    desk.answer("Escape", [&](const QWidget& box) {
      const auto* area = box.findChild<QPlainTextEdit*>();
      ASSERT_NE(area, nullptr);
      EXPECT_EQ(area->toPlainText(), text);
      EXPECT_EQ(area->wordWrapMode() == QTextOption::WrapAnywhere, *piece == 'x')
          << "else each line would be looked through to the end of the word";
      for (const QLabel* label : box.findChildren<QLabel*>()) {
        EXPECT_LT(label->text().size(), 10000) << "a label is laid out as a whole";
      }
    });
    ask({.text = text.toStdString(), .buttons = Buttons::okCancel});
  }
  desk.answer("Escape");
  ask({.text = "one\rtwo\r\nthree", .buttons = Buttons::okCancel});
  EXPECT_EQ(desk.message, "Wizard: one\ntwo\nthree");
}

TEST_F(Hands, TheReasonOfAMarkStandsInTheStatusLineWhileItsFieldHasTheFocus) {
  const auto* line = desk.view.findChild<QLabel*>(QStringLiteral("statusLine"));
  const QString last = line->text();
  const QString tip = desk.widget("PropertyName").toolTip();
  desk.write("PropertyName", "A,B");
  EXPECT_TRUE(QTest::qWaitFor([&] { return line->text().startsWith("A comma splits"); }));
  EXPECT_EQ(desk.widget("PropertyName").toolTip(), tip);
  EXPECT_TRUE(desk.widget("PropertyName").accessibleDescription().endsWith(line->text()));
  desk.click("Units");
  EXPECT_EQ(line->text(), last);
}

}  // namespace
}  // namespace kova::test
