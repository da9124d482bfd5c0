// SPDX-License-Identifier: MIT
// Start-up, names, entering a project, Done, the guided dialog.
#include <filesystem>

#include "completion/device_list_checks.h"
#include "support/flow.h"
#include "support/memory_file.h"

namespace kova::test {
namespace {

using Cases = std::vector<std::pair<std::string, std::string>>;

struct Project : Flow {
  void done() { form.Command1.click(); }
  /// Whether the tables are to be copied to `folder`.
  static std::string question(const std::string& folder) {
    return "Write to FEC_HOME repository?: Do you want to update the database files under " +
           folder + " ?";
  }

  const std::string magnet = home.path("MAGNET");
};

TEST_F(Project, ComesUpWithDefaults) {
  EXPECT_EQ(form.ProjectDir.text(), home.path(""));
  EXPECT_EQ(shown(form.NumDevices, form.MaxValue, form.MinValue, form.Units), "1, 100, 0, none");
  EXPECT_EQ(shown(form.InputDataFormat, form.InputDataSize), "NULL, 0");
  EXPECT_EQ(shown(form.OutputDataFormat, form.OutputDataSize), "Double, 1");
  EXPECT_EQ(shown(form.vbProject, form.cProject), "ticked, clear");
  EXPECT_FALSE(form.ArrayTypeCombo.enabled());
  EXPECT_TRUE(form.ServerOption.selected());
  EXPECT_EQ(form.deviceNamesInputText.text(), "Device 0");
  form.prpGuide.click();
  EXPECT_EQ(said(), "Property Information guidance is coming soon to a theater near you!");
}

TEST_F(Project, TheLocalNameFollowsTheExportName) {
  const Cases cases = {{"M", "MEQM"},        {"MAG", "MAGEQM"},  {"MAGMA", "MAGEQM"},
                       {"QVXMAG", "MAGEQM"}, {"QVX", ""},        {"QV", "QVEQM"},
                       {"GR.VAC", "VACEQM"}, {"-.AB", ".ABEQM"}, {"M6-X", "XEQM"},
                       {"gr.V", "gr.EQM"},   {"ZA", ""},         {"QVXGR", "GREQM"}};
  for (const auto& [typed, derived] : cases) {
    open("");
    letters(form.ExportName, typed);
    EXPECT_EQ(form.LocalName.text(), derived) << typed;
  }
}

TEST_F(Project, ALocalNameOfAnotherServerIsToldFromItByItsRow) {
  form.ProjectDir.click();
  for (const char* name : {"XY", "AB"}) {
    open(name);
    commit("P");
  }
  open("GRAB");
  EXPECT_EQ(form.LocalName.text(), "ABE1");
  open("AB");
  EXPECT_EQ(form.LocalName.text(), "ABEQM") << "its own";
}

TEST_F(Project, FieldsThatWereClickedKeepWhatTheyHold) {
  letters(form.ExportName, "QVXMA");
  EXPECT_EQ(shown(form.LocalName, form.ProjectDir), "MAEQM, " + home.path("QVXMA"));

  form.LocalName.click();
  letters(form.ExportName, "G");
  EXPECT_EQ(shown(form.LocalName, form.ProjectDir), "MAEQM, " + home.path("QVXMAG"));

  form.ProjectDir.click();
  letters(form.ExportName, "N");
  EXPECT_EQ(form.ProjectDir.text(), home.path("QVXMAG"));
}

TEST_F(Project, IsReadAtTheKeystrokeThatCompletesItsName) {
  letters(form.ExportName, "MAGNE");
  EXPECT_EQ(form.ProjectDir.text(), home.path("MAGNE"));
  EXPECT_EQ(engineer.rows(), Rows{});

  letters(form.ExportName, "T");
  EXPECT_EQ(engineer.rows(), (Rows{.properties = 8, .history = 2, .alarms = 2}));
  EXPECT_EQ(lines().front(), "[MAGNET] RAMP.START <[0:3 ]Start current ramp>");
  EXPECT_EQ(form.PropertyList.selectedIndex(), 7);
  EXPECT_EQ(shown(form.LocalName, form.NumDevices), "MAGEQM,  4");
  EXPECT_EQ(home.read("MAGNET/exports-1700000000.csv"), example.at("exports.csv"));

  letters(form.ExportName, "S");
  EXPECT_EQ(engineer.rows(), Rows{});
  EXPECT_EQ(lines(), Lines{});
}

TEST_F(Project, ShowsTheRowsOfAPropertyInAllPanels) {
  open("MAGNET");
  form.PropertyList.select(5);
  EXPECT_EQ(shown(form.HistoryCheck, form.AlarmWatchCheck), "clear, ticked");
  EXPECT_TRUE(form.AlarmWatchPanel.enabled());
  EXPECT_EQ(shown(form.AlmSystemText, form.almSeverityText, form.almCountThreshText,
                  form.almNormalText, form.almMaskText),
            "7, 10, 0, 1, 255");
  EXPECT_TRUE(form.ServerOption.selected());
  EXPECT_EQ(form.deviceNamesInputText.text(), "QUAD.1\r\nQUAD.2\r\nQUAD.3\r\nQUAD.4\r\n\r\n");

  form.PropertyList.select(6);
  EXPECT_EQ(shown(form.PropertyName, form.PropertyDescription, form.AccessMode),
            "FIELD, Field at the probes, READ");
  EXPECT_EQ(shown(form.OutputDataFormat, form.OutputDataSize, form.ArrayTypeCombo),
            "Double, 4, CHANNEL");
  EXPECT_EQ(shown(form.MinValue, form.MaxValue, form.Units), "-1.5, 1.5, T");
  EXPECT_EQ(shown(form.HistoryCheck, form.AlarmWatchCheck), "ticked, clear");
  EXPECT_FALSE(form.AlarmWatchPanel.enabled());
  EXPECT_EQ(shown(form.ArchiveRateText, form.PollRateText, form.ArchiveHeartbeatText,
                  form.ShortDepthText, form.LongDepthText, form.toleranceText),
            "30, 2000, 18000, 900, 6, 0.001");
  EXPECT_TRUE(form.propertyOption.selected());
  EXPECT_EQ(form.deviceNamesInputText.text(),
            "PROBE.N\r\nPROBE.E\r\nPROBE.S\r\nPROBE.W\r\nDevice 4\r\n");

  form.PropertyList.select(7);
  EXPECT_EQ(shown(form.InputDataFormat, form.InputDataSize), "Single, 4");
  EXPECT_EQ(shown(form.almHiText, form.almLoText, form.almHiWarnText, form.almLoWarnText),
            "240.5, -0.5, 230, 0");

  form.PropertyList.select(0);
  EXPECT_FALSE(form.ArrayTypeCombo.enabled());
}

TEST_F(Project, ShowsWhatFitsNoListByTheNearest) {
  project("S", {"S,SEQM,P,,Double,x,short,1,OTHER,2,[abc]x,0",
                "S,SEQM,Q,5,short.wav,0,NULL,1,WRITE,2,[1:2 m s]y,0",
                "S,SEQM,R,1,short,0,NULL,1,WRITE,none,z,0"});
  home.write("S/Q-names.csv", "DEVICE_NUMBER,DEVICE_NAME\r\n0,LEFT\r\n");
  open("S");
  EXPECT_TRUE(form.DeviceListCheck.ticked()) << "one name is a list";
  EXPECT_EQ(engineer.rows().properties, 2) << "no number of devices ends the reading";
  EXPECT_EQ(shown(form.ArrayTypeCombo, form.Units), "WAV, m s");

  form.PropertyList.select(0);
  EXPECT_EQ(form.AccessMode.text(), "READ");
  EXPECT_EQ(shown(form.OutputDataFormat, form.ArrayTypeCombo), "NULL, UNKNOWN");
  EXPECT_TRUE(form.ArrayTypeCombo.enabled());
  EXPECT_EQ(shown(form.InputDataFormat, form.InputDataSize), "Integer, x");
  EXPECT_EQ(shown(form.MinValue, form.MaxValue, form.Units), "1, 2, none");
  EXPECT_EQ(form.PropertyDescription.text(), "x");
}

TEST_F(Project, WhoseLastRowNamesAnotherServerLeadsThere) {
  for (const auto& [from, to] : Cases{{"A", "B"}, {"B", "A"}, {"C", "D"}, {"D", "E"}, {"E", "E"}}) {
    project(from, {to + "," + to + "EQM,P,1,double,0,NULL,1,READ,1,x,0"});
  }
  open("A");
  EXPECT_EQ(form.ProjectDir.text(), home.path("A"));
  EXPECT_EQ(engineer.rows(), Rows{}) << "in a circle none is left";

  open("C");
  EXPECT_EQ(form.ProjectDir.text(), home.path("E"));
  EXPECT_EQ(lines(), (Lines{"[E] P <x>"}));
}

TEST_F(Project, IsWrittenCopiedAndHandedToTheGenerators) {
  std::filesystem::create_directory(home.path("fec"));
  engineer.environment.values["FECDB"] = home.path("fec");
  engineer.answers = {Answer::yes};
  letters(form.ExportName, "MAGNET");
  form.PropertyList.select(6);
  form.PropertyList.select(5);
  toggle(form.cProject);

  done();

  EXPECT_EQ(said(), question(home.path("fec/MAGEQM/")));
  Files written = example;
  for (const std::string row : {"6,READ,", "7,READ,"}) {
    std::string& table = written["exports.csv"];
    table.insert(table.find(row) + row.size(), " ");  // the number of devices as the form shows it
  }
  written["history.csv"] += " 3,MAGNET,MAGEQM,STATE,#0, 4,short, 18000, 2000, 30,0.001, 900, 6\r\n";
  written["devices.csv"] = written.at("MAGEQM-devices.csv") + " 4,Device 4\r\n";
  EXPECT_EQ(home.files("MAGNET"), written);
  written.erase("MAGEQM-devices.csv");
  EXPECT_EQ(home.files("fec/MAGEQM"), written);
  EXPECT_EQ(engineer.programs.started,
            (Lines{"vbskelgen.exe " + magnet, "cskelgen.exe " + magnet + " LINUX"}));
  EXPECT_TRUE(engineer.ended);
}

TEST_F(Project, StaysOutOfTheRepositoryUnlessTheEngineerSaysYes) {
  engineer.environment.values = {{"FECDB", home.path("other")}, {"FEC_HOME", home.path("fec/")}};
  open("MAGNET");
  toggle(form.vbProject);
  type(form.LocalName, "OTHER");

  done();

  EXPECT_EQ(said(), question(home.path("fec/MAGEQM/")));
  EXPECT_EQ(home.names(), std::set<std::string>{"MAGNET"});
  EXPECT_EQ(engineer.programs.started, Lines{});
}

TEST_F(Project, ThatCantBeCopiedCostsAMessageAFile) {
  engineer.environment.values["FEC_HOME"] = home.path("none");
  project("E", {"E,,P,1,double,0,NULL, 1,READ,1,x,0"});
  open("E");
  done();
  EXPECT_EQ(said(), "nothing") << "there is no folder to ask for";
  const Cases cases = {{"EEQM", "No such file or directory"},
                       {"../x", "the local name is not a valid folder name"},
                       {{"A\0B", 3}, "the local name is not a valid folder name"}};
  for (const auto& [localName, why] : cases) {
    project("E", {"E," + localName + ",P,1,double,0,NULL, 1,READ,1,x,0"});
    open("");
    open("E");
    engineer.answers = {Answer::yes};

    done();

    const std::string folder = home.path("none/") + localName + pathSeparator;
    EXPECT_EQ(said(), question(folder));
    EXPECT_EQ(said(), "Couldn't copy " + home.path("E/exports.csv to ") + folder + " : " + why);
    EXPECT_EQ(home.names(), (std::set<std::string>{"E", "MAGNET"}));
  }
}

TEST_F(Project, WithoutPropertiesIsLeftWithoutATrace) {
  open("NEW");
  form.srvGuide.click();
  for (const Answer answer : {Answer::cancel, Answer::ok}) {
    engineer.answers = {answer};
    done();
    EXPECT_EQ(said(),
              "Server Setup Wizard: You have not added any properties to your project !\r\n"
              "Do you want to exit the Server Setup Wizard ?");
    EXPECT_EQ(engineer.ended, answer == Answer::ok);
  }
  EXPECT_FALSE(engineer.program.helper.window.loaded());
  EXPECT_EQ(home.names(), std::set<std::string>{"MAGNET"});
}

TEST_F(Project, MovesToADirectoryThatIsMadeFromTheTopDown) {
  open("MAGNET");
  form.ProjectDir.click();
  open("OTHER");
  form.EditCmd.click();
  EXPECT_EQ(engineer.rows().properties, 9);

  type(form.ProjectDir, home.path("a/b/"));
  commit("LAST");
  done();

  EXPECT_EQ(tableRows("a/b/exports.csv"),
            (Lines{"OTHER,MAGEQM,LAST,4,float.CHANNEL,4,float, 1,READ|WRITE, 4,"
                   "[0:250 A]Current of each supply,0"}));
  EXPECT_EQ(home.files("a/b").size(), 2) << "the table and the names of the devices";
  EXPECT_EQ(engineer.programs.started, Lines{"vbskelgen.exe " + home.path("a/b")});
}

TEST_F(Project, WithoutADirectoryToWriteToStaysAsItIs) {
  home.write("D/exports.csv/x", "");
  open("MAGNET");
  form.PropertyList.select(5);
  form.ProjectDir.click();
  const Cases cases = {{"nowhere", "the folder nowhere does not exist"},
                       {"", "no project directory is given"},
                       {home.path("D"), "Is a directory"}};
  for (const auto& [folder, why] : cases) {
    type(form.ProjectDir, folder);
    form.EditCmd.click();
    done();
    EXPECT_EQ(said(), "Could not create exports.csv file : " + why);
    EXPECT_EQ(engineer.rows(), (Rows{.properties = 1, .alarms = 1})) << folder;
  }
}

/// A disk on which names that differ in case are one.
struct CaselessDisk : MemoryFile {
  CaselessDisk() : MemoryFile("") {}
  bool ignoresCase(const Path&) const override { return true; }
  std::string withoutCase(std::string_view name) const override {
    std::string folded(name);
    for (char& letter : folded) letter = CodePage::windows1252().capital(letter);
    return folded;
  }
};

TEST_F(Project, IsNotWrittenWhereTheDiskCantKeepANamesFile) {
  const std::string tooLong(250, 'x');
  open("NEW");
  for (const std::string& property :
       {tooLong, std::string("P\xE9"), std::string("P"), std::string("P\xC9")}) {
    type(form.PropertyName, property);
    form.DeviceListCheck.setValue(1);
    form.EditCmd.click();
  }
  done();
  EXPECT_EQ(said(),
            "Could not write " + tooLong + "-names.csv : the disk can't hold a file of this name");
  EXPECT_EQ(home.files("NEW").size(), 0U);

  CaselessDisk disk;
  const auto file = findUnwritableNamesFile(disk, engineer.program.wizard.state.project, {});
  EXPECT_EQ(file.value().name, "P\xC9-names.csv");
  EXPECT_EQ(file->why, "the disk can't distinguish it from P\xE9-names.csv");
}

TEST_F(Project, GoesOnBesideAnotherWizardThatIsFinishingIt) {
  open("MAGNET");
  const auto held = engineer.files->lock({magnet});
  done();
  EXPECT_EQ(status(),
            "All tables written. Another wizard is saving this project. Gave up waiting after 3 "
            "seconds.");
  EXPECT_TRUE(engineer.ended);
}

struct GuidedDialog : Flow {
  void SetUp() override {
    Flow::SetUp();
    form.srvGuide.click();
  }

  void enter(const std::string& text) {
    type(box, text);
    box.keyDown(TextField::enterKey);
  }
  std::string server() const { return shown(form.ExportName, form.LocalName, form.NumDevices); }

  ExportHelper& dialog = engineer.program.helper;
  TextField& box = dialog.ParamText;
};

TEST_F(GuidedDialog, AsksForTheServerStepByStep) {
  EXPECT_EQ(dialog.window.title, "Device Server Parameters");
  EXPECT_EQ(dialog.helperLabel.caption(),
            "Please Enter the Export Name under which you would like your device server to be "
            "known: ");
  EXPECT_FALSE(dialog.lastParam.enabled());
  enter("MAGNUM");
  EXPECT_EQ(box.text(), "MAGEQM");
  EXPECT_EQ(box.caret(), 6);
  enter("MYEQM");
  EXPECT_EQ(box.text(), "1");
  EXPECT_FALSE(dialog.nextParam.enabled());

  dialog.lastParam.click();
  EXPECT_EQ(box.text(), "MYEQM");
  dialog.lastParam.click();
  EXPECT_EQ(box.text(), "MAGNUM");
  EXPECT_FALSE(dialog.lastParam.enabled());
  dialog.nextParam.click();
  EXPECT_EQ(box.text(), "MAGEQM") << "suggested again";
  dialog.nextParam.click();
  enter("4");
  EXPECT_EQ(server(), "MAGNUM, MAGEQM, 4");
  EXPECT_TRUE(status().ends_with(" Guidance changed the number of devices from 1 to 4."));
  EXPECT_FALSE(dialog.window.loaded());
}

TEST_F(GuidedDialog, KeepsItsValuesAndWritesThemAllWhenItIsDone) {
  type(box, "AB");
  dialog.nextParam.click();
  dialog.window.unload();
  EXPECT_EQ(server(), ", , 1");

  form.srvGuide.click();
  EXPECT_EQ(box.text(), "");
  dialog.nextParam.click();
  EXPECT_EQ(box.text(), "EQM");
  dialog.DoneParam.click();
  EXPECT_EQ(server(), ", EQM, ");
}

}  // namespace
}  // namespace kova::test
