// SPDX-License-Identifier: MIT
// The road to a finished project in the real window.
#include <filesystem>
#include <map>
#include <sstream>

#include "window/desk.h"

namespace kova::test {
namespace {

namespace fs = std::filesystem;

const CodePage page = CodePage::windows1252();

/// The files of a folder by name, without backups.
std::map<std::string, std::string> tablesIn(const TemporaryFolder& home, const std::string& name) {
  std::map<std::string, std::string> tables;
  for (const auto& entry : fs::directory_iterator(home.path(name))) {
    const std::string file = entry.path().filename().native();
    if (file.find("-17000") == std::string::npos) tables[file] = home.read(fs::path(name) / file);
  }
  return tables;
}

TEST(ProjectInTheWindow, IsReadWhileItsNameIsTypedAndWrittenByDone) {
  const TemporaryFolder home;
  fs::copy(KOVA_EXAMPLE, home.path("MAGNET"));
  fs::create_directory(home.path("fec"));
  const std::map<std::string, std::string> commands{{"vbskelgen.exe", home.path("MAGNET\n")},
                                                    {"cskelgen.exe", home.path("MAGNET LINUX\n")}};
  for (const auto& [name, words] : commands) {
    std::ostringstream script;
    script << "#!/bin/sh\ncd " << home.path() << "; echo \"$*\" > " << name << ".new; mv " << name
           << ".new " << name << ".ran\n";
    home.write(name, script.str());
    fs::permissions(home.path(name), fs::perms::owner_all);
  }
  auto expected = tablesIn(home, "MAGNET");
  const QByteArray path = qgetenv("PATH");
  qputenv("HOMEDRIVE", home.path().c_str());
  qputenv("FEC_HOME", home.path("fec").c_str());
  qputenv("PATH", QByteArray::fromStdString(home.path()) + ":" + path);
  const Machine machine = posixMachine(page);
  FakeClock clock;
  SetupWizard program({*machine.files, *machine.environment, clock, *machine.programs}, {});
  Desk desk(program, page);
  const auto lines = [&] { return program.wizard.form.PropertyList.lines().size(); };
  untilTheEnd(desk, [&] {
    desk.play("type MAGNE");
    EXPECT_EQ(lines(), 0u);
    desk.play("type T");
    EXPECT_EQ(lines(), 8u);
    desk.play("click cProject; reply Y; click Command1");
  });
  qputenv("PATH", path);
  qunsetenv("FEC_HOME");
  qunsetenv("HOMEDRIVE");

  EXPECT_EQ(desk.message,
            "Write to FEC_HOME repository?: Do you want to update the database files under " +
                home.path("fec/MAGEQM/") + " ?");
  expected["devices.csv"] = expected.at("MAGEQM-devices.csv") + " 4,Device 4\r\n";
  EXPECT_EQ(tablesIn(home, "MAGNET"), expected);
  // Names of the server are copied as they are written, those of a property once it was selected.
  for (const char* kept : {"MAGEQM-devices.csv", "FIELD-names.csv"}) expected.erase(kept);
  EXPECT_EQ(tablesIn(home, "fec/MAGEQM"), expected);
  for (const auto& [name, words] : commands) {
    EXPECT_TRUE(QTest::qWaitFor([ran = home.path(name + ".ran")] { return fs::exists(ran); }));
    EXPECT_EQ(home.read(name + ".ran"), words);
  }
}

// In the end the form is as it comes up with a project that is read: the last line selected, a
// blank ahead of the number of devices.
const std::string sixProperties = R"(
    write PropertyName PLAIN; choose OutputDataFormat Single; write PropertyDescription a value
    write Units A; reply Return; key Alt+A
    write PropertyName ARRAY; write OutputDataSize 4; choose OutputDataFormat Long
    choose ArrayTypeCombo CHANNEL; write MaxValue 7; write MinValue -2.5; reply Return; key Alt+A
    write PropertyName KEPT; write OutputDataSize 1; choose OutputDataFormat Double
    click HistoryCheck; write ArchiveRateText 30; reply Return; click AddProperty
    write PropertyName WATCHED; key Alt+W; write almHiText 40; reply Return; click AddProperty
    write PropertyName LISTED; write OutputDataSize 2; click DeviceListCheck
    write deviceNamesInputText ONE; key Return; type TWO; key Return; reply Return; key Alt+A
    write PropertyName RAMP; click ProcessCheck; write NumStepsText 3; reply Return; key Alt+A
    write NumDevices 2; write NumDevices  1; line 9)";

TEST(ProjectInTheWindow, OfSixPropertiesComesBackAsItWasDefined) {
  const TemporaryFolder home;
  fs::create_directory(home.path("FRESH"));
  std::map<std::string, std::string> written;
  for (const bool first : {true, false}) {
    Engineer engineer(home.path());
    engineer.program.wizard.messageBox = {};
    Desk desk(engineer.program, page);
    untilTheEnd(desk, [&] {
      desk.play("type FRESH");
      if (first) desk.play(sixProperties);
      EXPECT_EQ(engineer.program.wizard.form.PropertyList.lines().size(), 10u);
      desk.play("click Command1");
    });
    if (first) written = tablesIn(home, "FRESH");
  }
  EXPECT_EQ(written.size(), 5u);
  EXPECT_EQ(tablesIn(home, "FRESH"), written);
  EXPECT_EQ(written["LISTED-names.csv"],
            "DEVICE_NUMBER,DEVICE_NAME\r\n 0,ONE\r\n 1,TWO\r\n 2,Device 2\r\n");
  const std::string row =
      "FRESH,FREEQM,ARRAY,4,long.CHANNEL,0,NULL, 2,READ,1,[-2.5:7 A]a value,0\r\n";
  EXPECT_NE(written["exports.csv"].find(row), std::string::npos) << written["exports.csv"];
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
