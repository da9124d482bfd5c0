// SPDX-License-Identifier: MIT
// Where things stand in the window, and whether they can be read and reached.
#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QStyleOption>
#include <algorithm>
#include <array>
#include <cmath>
#include <tuple>

#include "window/desk.h"

namespace kova::test {
namespace {

TEST(LayoutTemplates, ThatDoNotFitTheirWindowAreRefused) {
  const std::vector<std::array<std::string, 3>> cases = {
      {"Frame5", "-", "\"ProjectDir\" is not placed"},
      {"Frame5", "ProjectDir Folder", "\"Folder\" needs a control or a layout template"},
      {"Frame5", "ProjectDir ProjectDir", "\"ProjectDir\" is placed twice"},
      {"Frame5", "ProjectDir Units", "\"Units\" is outside its frame"},
      {"Frame5", "< ProjectDir", "\"<\" needs a control or a layout template"},
      {"Frame5", "^ ProjectDir", "\"^\" needs a control or a layout template"},
      {"Frame3", "InputDataFormat <\n^ InputDataSize", "\"InputDataSize\" overlaps another cell"}};
  const CodePage page = CodePage::windows1252();
  for (const auto& [name, picture, expected] : cases) {
    auto layoutTemplates = mainWindowTemplates();
    for (LayoutTemplate& layoutTemplate : layoutTemplates) {
      if (layoutTemplate.name == name) layoutTemplate.picture = picture.c_str();
    }
    Form1 form;
    QWidget window;
    try {
      const FormWidgets widgets(window, layoutTemplates, designedControls(form), page, [] {});
      ADD_FAILURE() << picture;
    } catch (const Failure& failure) {
      EXPECT_TRUE(std::string(failure.what()).ends_with(expected)) << failure.what();
    }
  }
}

struct Eye : AtTheWindow {
  /// Of a widget, in the window.
  QRect place(const char* name) const {
    const QWidget* widget = desk.view.widget(name);
    return {widget->mapTo(&desk.view, QPoint()), widget->size()};
  }
  void resize(QSize size) {
    desk.view.resize(size);
    QApplication::processEvents();
  }
  void setPoints(int points) const {
    QFont other = font;
    other.setPointSize(points);
    QApplication::setFont(other);
    QApplication::processEvents();
  }
  void eachFont(const std::function<void(int points)>& visit) {
    for (const int points : {8, 11, 12, 18}) {
      SCOPED_TRACE(points);
      setPoints(points);
      resize(desk.view.sizeHint());
      visit(points);
    }
  }
};

TEST_F(Eye, ColumnsHaveCommonEdgesAndNoDeadRoom) {
  eachFont([this](int) {
    const QRect input = place("Frame3");
    const QRect output = place("Frame4");
    for (const char* name : {"PropertyName", "AccessMode"}) {
      EXPECT_EQ(place(name).left(), input.left()) << name;
      EXPECT_EQ(place(name).right(), input.right()) << name;
    }
    EXPECT_EQ(place("MaxValue").left(), place("PropertyDescription").left());
    for (const char* name : {"MaxValue", "ArrayTypeCombo"}) {
      EXPECT_EQ(place(name).right(), output.right()) << name;
    }
    EXPECT_LE(std::abs(input.width() - output.width()), 1) << "each follows its own texts";
    EXPECT_EQ(place("DeviceListCheck").left() - output.right(), output.left() - input.right());
    for (const auto& [label, field] :
         {std::pair("Label7", "InputDataFormat"), std::pair("Label5", "InputDataSize")}) {
      EXPECT_LT(input.bottom() - place("InputDataSize").bottom(), place(field).height());
      EXPECT_LE(std::abs(place(label).center().y() - place(field).center().y()), 1) << label;
    }
    const QRect edit = place("EditCmd");
    const int gap = edit.left() - place("AddProperty").right();
    EXPECT_GT(place("Command1").top() - edit.bottom(), gap) << "the last step stands apart";
  });
}

TEST_F(Eye, OnlyWhatHoldsMoreGrowsWithTheWindow) {
  const std::vector<std::tuple<const char*, bool, bool>> cases = {
      {"ExportName", false, false},
      {"NumDevices", false, false},
      {"MaxValue", false, false},
      {"almHiText", false, false},
      {"Frame3", false, false},
      {"Frame4", false, false},
      {"PropertyDescription", true, false},
      {"ProjectDir", true, false},
      {"PropertyList", true, true},
      {"deviceNamesInputText", true, true}};
  resize(desk.view.sizeHint() + QSize(400, 0));
  std::map<std::string, QSize> before;
  for (const auto& [name, wider, taller] : cases) before[name] = place(name).size();
  resize(desk.view.size() + QSize(200, 200));
  for (const auto& [name, wider, taller] : cases) {
    const QSize grown = place(name).size() - before[name];
    EXPECT_EQ(grown.width(), wider ? 100 : 0) << name;
    EXPECT_EQ(grown.height() > 0, taller) << name;
  }
}

TEST_F(Eye, TheWindowFitsOnTheScreenWithItsFrame) {
  setPoints(24);
  Engineer other(home.path());
  const MainView view(other.program, page);
  other.start();
  const int screen = view.screen()->availableGeometry().width();
  EXPECT_TRUE(QTest::qWaitFor([&] { return view.frameGeometry().width() == screen; }));
  EXPECT_GT(view.frameGeometry().width(), view.width());
}

/// Room for all that a widget says. What scrolls or wraps is content with less than it asks for.
QSize neededBy(const QWidget& shown) {
  const auto advance = [&](const QString& text) {
    return shown.fontMetrics().horizontalAdvance(text);
  };
  const auto* label = qobject_cast<const QLabel*>(&shown);
  if (label != nullptr && label->wordWrap()) return {0, label->heightForWidth(label->width())};
  const bool whole = label != nullptr || qobject_cast<const QAbstractButton*>(&shown) != nullptr;
  QSize needed = whole ? shown.sizeHint() : shown.minimumSizeHint();
  if (const auto* list = qobject_cast<const QComboBox*>(&shown)) {
    QStyleOptionComboBox option;
    option.initFrom(list);
    const QRect text = list->style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                     QStyle::SC_ComboBoxEditField, list);
    for (int entry = 0; entry < list->count(); ++entry) {
      const int width = list->width() - text.width() + advance(list->itemText(entry));
      needed = needed.expandedTo({width, 0});
    }
  }
  const auto* field = qobject_cast<const QLineEdit*>(&shown);
  if (field != nullptr && field->objectName() != QStringLiteral("ProjectDir")) {
    constexpr int edges = 12;
    needed = needed.expandedTo({advance(field->text()) + edges, 0});
  }
  return needed;
}

/// Looks for texts that are cut. Keeps a picture where somebody asks for them.
void visit(QWidget& window, const char* name) {
  QApplication::processEvents();
  for (const QWidget* shown : window.findChildren<QWidget*>()) {
    // Places on a screen whose scale is no whole number are rounded.
    const QSize room = shown->size() + QSize(1, 1);
    if (!shown->isVisible()) continue;
    EXPECT_EQ(neededBy(*shown).expandedTo(room), room)
        << name << ' ' << shown->metaObject()->className() << ' '
        << qPrintable(shown->objectName());
  }
  const QString pictures = qEnvironmentVariable("KOVA_PICTURES");
  if (pictures.isEmpty()) return;
  const QString file = QStringLiteral("%1-%2-%3.png").arg(pictures, name);
  EXPECT_TRUE(window.grab().save(file.arg(QApplication::font().pointSize(), 2, 10, QChar(u'0'))));
}

/// What has the focus must be in sight, or as much of it as there is room for.
void reachAll(QWidget& window) {
  window.activateWindow();
  auto& area = *window.findChild<QScrollArea*>();
  for (QWidget* shown : area.widget()->findChildren<QWidget*>()) {
    if (!shown->isVisible() || !shown->isEnabled()) continue;
    if ((shown->focusPolicy() & Qt::TabFocus) == 0) continue;
    shown->setFocus(Qt::TabFocusReason);
    QApplication::processEvents();
    const QRect place(shown->mapTo(&area, QPoint()), shown->size());
    const QSize seen = (place & area.viewport()->geometry()).size();
    const QSize wanted = shown->size().boundedTo(area.viewport()->size());
    EXPECT_EQ(seen, wanted) << qPrintable(shown->objectName());
  }
}

TEST_F(Eye, NothingIsCutOrOutOfReach) {
  constexpr QSize screen(1024, 768);
  constexpr QSize frame(4, 28);
  const double scale = desk.view.devicePixelRatioF();
  eachFont([&](int points) {
    form.ExportName.setText("MAGNET");
    desk.answer("Escape", [](QWidget& box) { visit(box, "warning"); });
    form.LocalName.setText("");
    form.LocalName.setText("TOOLONG");
    form.PropertyName.setText("NEW");
    desk.answer("Escape", [](QWidget& box) { visit(box, "question"); });
    form.AddProperty.click();

    visit(desk.view, "whole");
    resize(desk.view.sizeHint().boundedTo(screen / scale - frame));
    visit(desk.view, "screen");
    for (const char* button : {"AddProperty", "EditCmd", "RemoveProperty", "Command1"}) {
      const QWidget& shown = desk.widget(button);
      const bool inSight = shown.visibleRegion().boundingRect().size() == shown.size();
      EXPECT_TRUE(inSight || points > 12 || scale > 1) << button << " has to be scrolled to";
    }
    reachAll(desk.view);

    form.srvGuide.click();
    visit(desk.view.helper(), "guide");
    desk.view.helper().close();
  });
}

double luminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.05 + 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
         0.0722 * linear(colour.blueF());
}

double lowestContrast(const QWidget& window) {
  double lowest = 21;
  for (const QWidget* widget : window.findChildren<QWidget*>()) {
    for (const auto& [text, base] : {std::pair(QPalette::WindowText, QPalette::Window),
                                     std::pair(QPalette::Text, QPalette::Base),
                                     std::pair(QPalette::ButtonText, QPalette::Button)}) {
      const double ink = luminance(widget->palette().color(QPalette::Disabled, text));
      const double paper = luminance(widget->palette().color(QPalette::Disabled, base));
      lowest = std::min(lowest, std::max(ink, paper) / std::min(ink, paper));
    }
  }
  return lowest;
}

TEST_F(Eye, WhatIsDisabledCanBeReadAndIsPalerThanTheRest) {
  form.ArchiveRateText.setText("fast");
  QPalette dark(QColor(45, 45, 48));
  dark.setColor(QPalette::Base, QColor(30, 30, 32));
  for (const QPalette& wanted : {dark, QPalette(QColor(239, 239, 239))}) {
    QApplication::setPalette(wanted);
    EXPECT_TRUE(QTest::qWaitFor([&] {
      const QPalette& now = desk.view.palette();
      return now.color(QPalette::Window) == wanted.color(QPalette::Window) &&
             lowestContrast(desk.view) >= 4;
    })) << lowestContrast(desk.view);
    const QPalette& now = desk.view.palette();
    EXPECT_NE(now.color(QPalette::Disabled, QPalette::WindowText), now.color(QPalette::WindowText));
  }
}

}  // namespace
}  // namespace kova::test
