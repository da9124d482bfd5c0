// SPDX-License-Identifier: MIT
// Start-up, names, entering a project, Done, the environment, the guided dialog.
#include <filesystem>

#include "support/flow.h"

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
  EXPECT_EQ(shown(form.ProjectDir, form.NumDevices, form.deviceNamesInputText),
            home.path("") + ", 1, Device 0");
  EXPECT_EQ(shown(form.MaxValue, form.MinValue, form.Units, form.vbProject, form.cProject),
            "100, 0, none, ticked, clear");
  EXPECT_EQ(
      shown(form.InputDataFormat, form.InputDataSize, form.OutputDataFormat, form.OutputDataSize),
      "NULL, 0, Double, 1");
  EXPECT_TRUE(form.ServerOption.selected() && !form.ArrayTypeCombo.enabled());
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
  for (const auto& [server, local] : Cases{{"GRAB", "ABE1"}, {"AB", "ABEQM"}}) {
    open(server);
    EXPECT_EQ(form.LocalName.text(), local);
  }
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
  EXPECT_EQ(shown(form.ProjectDir), home.path("MAGNE"));
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
  EXPECT_EQ(shown(form.AlmSystemText, form.almSeverityText, form.almNormalText, form.almMaskText),
            "7, 10, 1, 255");
  EXPECT_TRUE(form.ServerOption.selected());
  EXPECT_EQ(form.deviceNamesInputText.text(), "QUAD.1\r\nQUAD.2\r\nQUAD.3\r\nQUAD.4\r\n\r\n");

  form.PropertyList.select(6);
  EXPECT_EQ(shown(form.PropertyName, form.PropertyDescription, form.AccessMode),
            "FIELD, Field at the probes, READ");
  EXPECT_EQ(shown(form.OutputDataFormat, form.OutputDataSize, form.ArrayTypeCombo),
            "Double, 4, CHANNEL");
  EXPECT_EQ(shown(form.HistoryCheck, form.AlarmWatchCheck), "ticked, clear");
  EXPECT_TRUE(form.propertyOption.selected());
  EXPECT_EQ(form.deviceNamesInputText.text(),
            "PROBE.N\r\nPROBE.E\r\nPROBE.S\r\nPROBE.W\r\nDevice 4\r\n");
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
  engineer.programs.failure = "no such program";
  done();
  EXPECT_EQ(said().substr(0, 15), "Could not start");
  EXPECT_EQ(status(), "All tables written.");
  EXPECT_EQ(tableRows("a/b/exports.csv"),
            (Lines{"OTHER,MAGEQM,LAST,4,float.CHANNEL,4,float, 1,READ|WRITE, 4,"
                   "[0:250 A]Current of each supply,0"}));
  EXPECT_EQ(home.files("a/b").size(), 2) << "the table and the names of the devices";
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

TEST_F(Project, GoesOnBesideAnotherWizardThatIsFinishingIt) {
  open("MAGNET");
  const auto held = engineer.files->lock({magnet});
  done();
  EXPECT_EQ(status(),
            "All tables written. Another wizard is saving this project. Gave up waiting after 3 "
            "seconds.");
  EXPECT_TRUE(engineer.ended);
}

// Values of the environment that the code page can't tell.
const std::string lacks =
    " is not used: its value has characters that this system's code page (Windows-1252) lacks. ";

struct Values : Flow {
  void SetUp() override {}  // the environment is to be set ahead of the start
  std::string startedWithout(const std::set<std::string>& names) {
    engineer.environment.unusable = names;
    engineer.start();
    return status();
  }
  std::string done(const std::string& directory) {
    open("PUM");
    type(form.ProjectDir, directory);
    commit("FIELD");
    form.Command1.click();
    return status();
  }
  const std::string first = "Type an export name to define its server or to open its project.";
};

TEST_F(Values, TheNextFolderIsTakenAndTheFirstSentenceSaysSo) {
  EXPECT_EQ(startedWithout({"HOMEDRIVE", "HOME", "FECDB"}),
            "HOMEDRIVE" + lacks + "HOME" + lacks + "FECDB" + lacks + first);
  EXPECT_EQ(form.ProjectDir.text(), home.path("")) << "the account's own home";
}

TEST_F(Values, WhatIsNotNeededIsNotMentioned) {
  engineer.environment.values = {{"HOMEDRIVE", home.path()}, {"FEC_HOME", home.path("fec")}};
  EXPECT_EQ(startedWithout({"HOME", "FECDB"}), first);
}

TEST_F(Values, WithoutAHomeOrARepositoryNothingIsWrittenThere) {
  engineer.environment.home.clear();
  engineer.environment.values = {{"FECDB", home.path("other")}};
  EXPECT_EQ(startedWithout({"HOME", "FEC_HOME"}),
            "HOME" + lacks +
                "No home directory can be named in Windows-1252. Type the project directory into "
                "Project Directory. FEC_HOME" +
                lacks.substr(0, lacks.size() - 1));
  done("");
  EXPECT_EQ(said(), "Could not create exports.csv file : no project directory is given");
  EXPECT_EQ(done(home.path("PUM")),
            "All tables written. FEC_HOME" + lacks + "The tables are not copied.");
  EXPECT_TRUE(home.has("PUM/exports.csv"));
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
  for (const char* former : {"MYEQM", "MAGNUM"}) {
    dialog.lastParam.click();
    EXPECT_EQ(box.text(), former);
  }
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
