// SPDX-License-Identifier: MIT
// Where things stand in the window, and whether they can be read.
#include <QLabel>
#include <algorithm>
#include <array>
#include <cmath>

#include "window/desk.h"

namespace kova::test {
namespace {

const CodePage page = CodePage::windows1252();

TEST(Sketches, ThatDoNotFitTheirWindowAreRefused) {
  struct Broken {
    std::string_view sketch;
    const char* picture;
    const char* complaint;
  };
  constexpr std::array<Broken, 8> cases{{
      {"Frame5", "ProjectDir", "none"},
      {"Frame5", "-", "\"ProjectDir\" stands nowhere"},
      {"Frame5", "ProjectDir Folder", "\"Folder\" is no control, or lacks its sketch"},
      {"Frame5", "ProjectDir ProjectDir", "\"ProjectDir\" stands twice"},
      {"Frame5", "ProjectDir Units", "\"Units\" is outside its frame"},
      {"Frame5", "< ProjectDir", "\"<\" is no control, or lacks its sketch"},
      {"Frame5", "^ ProjectDir", "\"^\" is no control, or lacks its sketch"},
      {"Frame3", "InputDataFormat <\n^ InputDataSize", "\"InputDataSize\" stands in another cell"},
  }};
  for (const Broken& one : cases) {
    auto sketches = mainWindowSketches();
    for (Sketch& sketch : sketches) {
      if (sketch.name == one.sketch) sketch.picture = one.picture;
    }
    Form1 form;
    QWidget window;
    std::string complaint = "none";
    try {
      FormWidgets(window, sketches, designedControls(form), page, [] {});
    } catch (const Failure& failure) {
      complaint = failure.what();
    }
    EXPECT_TRUE(complaint.ends_with(one.complaint)) << one.picture << ": " << complaint;
  }
}

struct Eye : testing::Test {
  void TearDown() override {
    QApplication::setFont(font);
    QApplication::setPalette(palette);
  }
  /// Of a widget, in the window.
  QRect place(const char* name) const {
    const QWidget* widget = desk.view.widget(name);
    return {widget->mapTo(&desk.view, QPoint()), widget->size()};
  }
  void eachFont(const std::function<void(int points)>& look) {
    for (const int points : {8, 13, 18}) {
      QFont larger = font;
      larger.setPointSize(points);
      QApplication::setFont(larger);
      QApplication::processEvents();
      desk.view.resize(desk.view.sizeHint());
      QApplication::processEvents();
      look(points);
    }
  }

  const QFont font = QApplication::font();
  const QPalette palette = QApplication::palette();
  TemporaryFolder home;
  Engineer engineer{home.path()};
  Desk desk{engineer.program, page};
};

TEST_F(Eye, ColumnsHaveCommonEdgesAndNoDeadRoom) {
  eachFont([this](int points) {
    SCOPED_TRACE(points);
    const QRect input = place("Frame3");
    const QRect output = place("Frame4");
    const int gap = output.left() - input.right();
    for (const char* name : {"PropertyName", "AccessMode"}) {
      EXPECT_EQ(place(name).left(), input.left()) << name;
      EXPECT_EQ(place(name).right(), input.right()) << name;
    }
    EXPECT_EQ(place("MaxValue").left(), place("PropertyDescription").left());
    for (const char* name : {"MaxValue", "ArrayTypeCombo"}) {
      EXPECT_EQ(place(name).right(), output.right()) << name;
    }
    EXPECT_EQ(input.width(), output.width());
    EXPECT_EQ(place("DeviceListCheck").left() - output.right(), gap);
    for (const char* name : {"InputDataSize", "OutputDataSize"}) {
      EXPECT_LT(input.bottom() - place(name).bottom(), place(name).height()) << name;
    }
  });
}

TEST_F(Eye, LabelsBesideFramesLeadIntoTheFirst) {
  for (const auto& [name, field] :
       {std::pair("Label7", "InputDataFormat"), std::pair("Label5", "InputDataSize")}) {
    const auto* label = static_cast<const QLabel*>(desk.view.widget(name));
    EXPECT_EQ(label->buddy(), desk.view.widget(field)) << name;
  }
}

TEST_F(Eye, TheLastStepStandsApartWithItsGenerators) {
  eachFont([this](int points) {
    SCOPED_TRACE(points);
    const QRect done = place("Command1");
    const QRect edit = place("EditCmd");
    const int gap = edit.left() - place("AddProperty").right();
    EXPECT_GT(done.top() - edit.bottom(), gap);
    EXPECT_GT(done.height(), edit.height());
    EXPECT_GT(done.width(), edit.width());
    EXPECT_EQ(done.right(), place("PropertyList").right());
    for (const char* name : {"vbProject", "cProject"}) {
      EXPECT_LE(done.left() - place(name).right(), 2 * gap + done.height()) << name;
      EXPECT_TRUE(place(name).top() >= done.top() && place(name).bottom() <= done.bottom()) << name;
    }
  });
}

TEST_F(Eye, OnlyWhatHoldsMoreGrowsWithTheWindow) {
  const auto sizes = [this](std::initializer_list<const char*> names) {
    std::vector<QSize> all;
    for (const char* name : names) all.push_back(place(name).size());
    return all;
  };
  const auto fields = {"ExportName", "NumDevices", "PropertyName",    "MaxValue",  "MinValue",
                       "Frame3",     "Frame4",     "ArchiveRateText", "almHiText", "almMaskText"};
  const auto lines = {"PropertyDescription", "ProjectDir", "PropertyList", "deviceNamesInputText"};
  desk.view.resize(desk.view.sizeHint() + QSize(400, 0));
  QApplication::processEvents();
  const auto fieldsBefore = sizes(fields);
  const auto linesBefore = sizes(lines);

  desk.view.resize(desk.view.size() + QSize(200, 200));
  QApplication::processEvents();

  EXPECT_EQ(sizes(fields), fieldsBefore);
  for (std::size_t i = 0; i < linesBefore.size(); ++i) {
    EXPECT_EQ(sizes(lines)[i].width(), linesBefore[i].width() + 100) << i;
    const bool holdsLines = i >= 2;
    EXPECT_EQ(sizes(lines)[i].height() > linesBefore[i].height(), holdsLines) << i;
  }
}

TEST_F(Eye, TheWindowFitsOnTheScreenWithItsFrame) {
  QFont large = font;
  large.setPointSize(24);
  QApplication::setFont(large);
  Engineer other(home.path());
  MainView view(other.program, page);
  other.start();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
  const QRect screen = view.screen()->availableGeometry();
  EXPECT_TRUE(QTest::qWaitFor([&] { return view.frameGeometry().width() == screen.width(); }));
  EXPECT_GT(view.frameGeometry().width(), view.width());
}

double luminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
         0.0722 * linear(colour.blueF());
}

double lowestContrast(const QWidget& window) {
  using Role = QPalette::ColorRole;
  double lowest = 21;
  for (const QWidget* widget : window.findChildren<QWidget*>()) {
    for (const auto& [text, base] :
         {std::pair(Role::WindowText, Role::Window), std::pair(Role::Text, Role::Base),
          std::pair(Role::ButtonText, Role::Button)}) {
      const auto light = [&](Role role) {
        return luminance(widget->palette().color(QPalette::Disabled, role)) + 0.05;
      };
      const auto [dark, bright] = std::minmax({light(text), light(base)});
      lowest = std::min(lowest, bright / dark);
    }
  }
  return lowest;
}

TEST_F(Eye, WhatIsDisabledCanBeReadAndIsPalerThanTheRest) {
  engineer.program.wizard.form.ArchiveRateText.setText("fast");
  QPalette dark(QColor(45, 45, 48));
  dark.setColor(QPalette::Base, QColor(30, 30, 32));
  for (const QPalette& one : {dark, QPalette(QColor(239, 239, 239))}) {
    QApplication::setPalette(one);
    const QColor colour = one.color(QPalette::Window);
    EXPECT_TRUE(QTest::qWaitFor([&] {
      return desk.view.palette().color(QPalette::Window) == colour &&
             lowestContrast(desk.view) >= 4;
    })) << lowestContrast(desk.view);
    EXPECT_NE(desk.view.palette().color(QPalette::Disabled, QPalette::WindowText),
              desk.view.palette().color(QPalette::Active, QPalette::WindowText));
  }
}

}  // namespace
}  // namespace kova::test
