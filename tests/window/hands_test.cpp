// SPDX-License-Identifier: MIT
// What the toolkit does with hands otherwise than an engineer means it.
#include <QClipboard>
#include <QScrollArea>
#include <QScrollBar>

#include "desktop/message_boxes.h"
#include "window/desk.h"

namespace kova::test {
namespace {

struct Hands : AtTheWindow {
  /// Holds a key down until it has repeated itself twice, which an X server reports in pairs like
  /// those of single presses to a toolkit that has no time to look for repeats.
  void hold(bool inPairs, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    for (const int press : {1, 2, 3}) {
      QWindow* window = QGuiApplication::focusWindow();
      const bool repeat = press > 1 && !inPairs;
      const QString text = textOf(key);
      const bool taken = qt_sendShortcutOverrideEvent(window, time, key, modifiers, text, repeat);
      if (!taken) send(*window, {QEvent::KeyPress, key, modifiers, text, repeat});
      time += 40;
      const bool goesOn = press < 3 && !inPairs;
      send(*QGuiApplication::focusWindow(), {QEvent::KeyRelease, key, modifiers, text, goesOn});
    }
    time += 40;
  }
  void send(QWindow& window, QKeyEvent event) const {
    event.setTimestamp(time);
    QCoreApplication::sendEvent(&window, &event);
  }
  static QString textOf(Qt::Key key) {
    if (key > Qt::Key_AsciiTilde) return key == Qt::Key_Return ? QStringLiteral("\r") : QString();
    return QString(QChar(key)).toLower();
  }

  quint64 time = 1000000;
};

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

TEST_F(Hands, AHeldKeyIsOneActAlsoWhereItsRepeatsLookLikePresses) {
  KeyRepeatFilter held(true);
  int acts = 0;
  form.EditCmd.onClick = form.HistoryCheck.onClick = [&] { ++acts; };
  for (const bool inPairs : {false, true}) {
    if (inPairs) qApp->installEventFilter(&held);
    const auto actsOf = [&](Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
      hold(inPairs, key, modifiers);
      return std::exchange(acts, 0);
    };
    EXPECT_EQ(actsOf(Qt::Key_E, Qt::AltModifier), 1);
    EXPECT_EQ(actsOf(Qt::Key_Return), 1);
    EXPECT_EQ(actsOf(Qt::Key_Return), 1) << "let go and pressed again";
    EXPECT_EQ(actsOf(Qt::Key_K, Qt::AltModifier), 1);
    EXPECT_EQ(actsOf(Qt::Key_Space), 1);
    desk.write("PropertyDescription", "");
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_X, Qt::Key_Backspace}) actsOf(key);
    EXPECT_EQ(form.PropertyDescription.text(), "   ");
    desk.click("deviceNamesInputText");
    desk.key("Ctrl+A");
    EXPECT_EQ(actsOf(Qt::Key_Return), 0);
    EXPECT_EQ(form.deviceNamesInputText.text(), "\r\n\r\n\r\n");
  }
  desk.key("F10 Return Tab Tab");
  hold(false, Qt::Key_Return);
  EXPECT_EQ(engineer.program.helper.paramIndex, 1);
}

TEST_F(Hands, AMessageShowsEachLineAndAKeyHeldFromBeforeAnswersNone) {
  const MessageBox ask = messageBoxes(desk.view, page, "Wizard");
  desk.soon([&] {
    QWidget* box = QApplication::activeModalWidget();
    EXPECT_TRUE(QTest::qWaitFor([&] { return box->isActiveWindow(); }));
    QTest::simulateEvent(box->windowHandle(), true, Qt::Key_Return, {}, "\r", true);
    desk.key("Escape");
  });
  EXPECT_EQ(ask({.text = "Sure?", .buttons = Buttons::okCancel}), Answer::cancel);
  desk.answer("Escape");
  ask({.text = "one\rtwo\r\nthree", .buttons = Buttons::okCancel});
  EXPECT_EQ(desk.message, "Wizard: one\ntwo\nthree");
}

TEST_F(Hands, TheDialogStaysInSight) {
  form.srvGuide.click();
  GuidedDialogView& dialog = desk.view.helper();
  EXPECT_EQ(dialog.windowHandle()->transientParent(), desk.view.windowHandle());
  dialog.showMinimized();
  form.srvGuide.click();
  EXPECT_FALSE(dialog.isMinimized());
  desk.view.close();
  EXPECT_EQ(dialog.windowHandle()->transientParent(), nullptr) << "it lives on alone";
  dialog.close();
}

TEST_F(Hands, TheBoxShowsItsBarAndTheLineOfTheCaret) {
  const QPlainTextEdit& edit = desk.box();
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
  const auto expectRefusal = [&](const char* name) {
    desk.answer("Return");
    desk.key("Alt+E");
    EXPECT_EQ(desk.focused(), name);
  };
  for (const char* name : {"ExportName", "PropertyName"}) {
    expectRefusal(name);
    desk.type("PUMPS");
  }
  desk.click("AlarmWatchCheck");
  desk.write("almSeverityText", "high");
  expectRefusal("almSeverityText");
  desk.type("7");
  EXPECT_EQ(form.almSeverityText.text(), "7");
  desk.write("almHiText", "1E39");
  form.almMaskText.setText("40");
  expectRefusal("EditCmd");
  EXPECT_EQ(form.almMaskText.text(), "40");
}

TEST_F(Hands, TheStatusLineBelongsToTheFocusAndBeginsWithWhatDoneHasReported) {
  engineer.program.wizard.messageBox = messageBoxes(desk.view, page, "Wizard");
  auto* line = desk.view.findChild<QLabel*>("statusLine");
  const auto begins = [&](const QString& text) { return line->text().startsWith(text); };
  desk.type("MAGNET");
  form.PropertyList.select(5);
  form.RemoveProperty.click();
  EXPECT_TRUE(begins("A change here drops")) << line->text().toStdString();
  desk.key("Shift+Tab");
  EXPECT_TRUE(begins("Property ")) << line->text().toStdString();

  std::filesystem::create_directory(home.path("MAGNET/devices.csv"));
  desk.widget("Command1").setFocus();
  EXPECT_TRUE(begins("Done writes")) << line->text().toStdString();
  desk.answer("Return");
  desk.key("Space");
  EXPECT_TRUE(begins("The project is not finished. Done")) << line->text().toStdString();
  desk.key("Tab");
  desk.key("Shift+Tab");
  EXPECT_TRUE(begins("Done writes")) << line->text().toStdString();
}

TEST_F(Hands, DigitsWithAltLeadToWhatIsFarByTheTabKey) {
  desk.type("MAGNET");
  form.AlarmWatchCheck.setValue(1);
  std::string places;
  for (const char* key : {"Alt+3", "Alt+4", "Alt+5", "Alt+6"}) {
    desk.key(key);
    places += desk.focused() + ' ';
  }
  EXPECT_EQ(places, "OutputDataFormat PropertyList deviceNamesInputText almMaskText ");
}

TEST_F(Hands, TypingInTheListFindsAName) {
  desk.type("MAGNET");
  desk.widget("PropertyList").setFocus();
  desk.type("ra");
  EXPECT_EQ(form.PropertyName.text(), "RAMP.START");
  desk.type("mp.r");
  EXPECT_EQ(form.PropertyName.text(), "RAMP.RESUME");
}

TEST_F(Hands, TheListGoesOnWhereALineWasRemoved) {
  desk.type("MAGNET");
  for (const auto& [key, next] : {std::pair("Up", 5), {"Down", 5}, {"Down", 4}}) {
    desk.click(desk.list(), desk.placeOfLine(5));
    form.RemoveProperty.click();
    desk.key(key);
    EXPECT_EQ(form.PropertyList.selectedIndex(), next) << "4 as it was the last line";
  }
}

}  // namespace
}  // namespace kova::test
