// SPDX-License-Identifier: MIT
// The road to a finished project in the real window.
#include "window/desk.h"

namespace kova::test {
namespace {

using ProjectInTheWindow = AtTheWindow;

TEST_F(ProjectInTheWindow, IsReadChangedAndWritten) {
  Files expected = home.files("MAGNET");
  std::filesystem::create_directory(home.path("fec"));
  engineer.environment.values["FEC_HOME"] = home.path("fec");
  EXPECT_EQ(desk.view.windowTitle(), QStringLiteral("KOVA Device Server Setup Wizard"));

  untilTheEnd(desk, [&] {
    desk.answer("Return");
    desk.click("EditCmd");
    EXPECT_EQ(desk.message, "KOVA Device Server Setup Wizard: Not a valid Export Name");
    desk.answer("Return");
    desk.click("Command1");
    EXPECT_FALSE(engineer.program.wizard.state.quitInProgress) << "Enter stays";
    desk.write("ExportName", "MAGNET");
    desk.write("PropertyName", "NEW");
    desk.choose("OutputDataFormat", "Long");
    desk.choose("ArrayTypeCombo", "SPECTRUM");
    desk.key("Alt+W");
    desk.write("almHiText", "40");
    desk.answer("Return");
    desk.key("Alt+A");
    desk.answer("Y");
    desk.click("Command1");
  });
  desk.write("PropertyName", "LATE");

  EXPECT_EQ(desk.message,
            "Write to FEC_HOME repository?: Do you want to update the database files under " +
                home.path("fec/MAGEQM/") + " ?");
  EXPECT_EQ(form.PropertyName.text(), "NEW") << "it has ended";
  expected["exports.csv"] +=
      "MAGNET,MAGEQM,NEW,4,long.SPECTRUM,4,float, 9,READ|WRITE, 4,[0:250 A]Current of each "
      "supply,0\r\n";
  expected["almwatch.csv"] += "MAGEQM,#0,NEW, 4,LONG.SPECTRUM, 10, 0, 40, 0, 0, 0,0,0\r\n";
  for (const std::string folder : {"MAGNET/", "fec/MAGEQM/"}) {
    EXPECT_EQ(home.read(folder + "exports.csv"), expected["exports.csv"]);
    EXPECT_EQ(home.read(folder + "almwatch.csv"), expected["almwatch.csv"]);
  }
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
