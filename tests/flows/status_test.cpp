// SPDX-License-Identifier: MIT
// The status line: what it tells of an act or ahead of it, and what it counts as not yet on disk.
#include <filesystem>
#include <limits>

#include "support/flow.h"
#include "wizard/focus_message.h"

namespace kova::test {
namespace {

struct Status : Flow {
  Status() {
    wizard.statusLine.notifyView = [this] { line = status(); };
  }

  std::string at(TextField& field) const { return focusMessage(wizard, &field); }
  std::string atDone() { return focusMessage(wizard, &form.Command1); }
  void pumps() {
    open("PUMPS");
    type(form.LocalName, "PUMEQM");
    commit("P");
  }
  void tells(const std::string& message) {
    EXPECT_LT(status().find(message), status().size()) << status();
  }

  Wizard& wizard = engineer.program.wizard;
  std::string line;  ///< as the window shows it
};

TEST_F(Status, ANewServerCountsUntilDoneHasWrittenIt) {
  letters(form.ExportName, "PUMPS");
  commit("P");
  EXPECT_EQ(line, "Property P added. 1 property not yet written.") << "Done would write no names";
  typeAndLeave(form.NumDevices, "2");
  typeAndLeave(form.deviceNamesInputText, "North\r\nSouth");
  EXPECT_EQ(line, "Property P added. 1 property, 2 device names not yet written.");
  for (CheckBox* box : {&form.HistoryCheck, &form.AlarmWatchCheck, &form.DeviceListCheck}) {
    toggle(*box);
  }
  form.EditCmd.click();
  EXPECT_EQ(line,
            "Property P replaced. 1 property, 1 history row, 1 alarm watch row, 4 device names not "
            "yet written.");
  form.EditCmd.click();
  EXPECT_EQ(line,
            "Property P replaced. It now has another alarm watch row; the earlier ones stay. 1 "
            "property, 1 history row, 2 alarm watch rows, 4 device names not yet written.");

  const std::vector<std::pair<std::string, std::string>> cases = {
      {"history.csv", "1 history row, 2 alarm watch rows, 4 device names"},
      {"almwatch.csv", "2 alarm watch rows, 4 device names"},
      {"devices.csv", "4 device names"},
      {"P-names.csv", "2 device names"}};
  for (const auto& [table, left] : cases) {
    std::filesystem::create_directories(home.path("PUMPS/" + table));
    form.Command1.click();
    EXPECT_EQ(said(), "Could not write " + table + " : Is a directory");
    EXPECT_EQ(line, "The project is not finished. " + left + " not yet written.");
    std::filesystem::remove(home.path("PUMPS/" + table));
  }

  toggle(form.AlarmWatchCheck);
  type(form.Units, "mbar");
  form.EditCmd.click();
  EXPECT_EQ(line, "Property P replaced. 1 property, 2 device names not yet written.");
  form.Command1.click();
  EXPECT_EQ(status(), "All tables written.");
}

TEST_F(Status, AProjectThatWasReadCountsWhereItDiffers) {
  home.write("MAGNET/devices.csv", example["MAGEQM-devices.csv"]);
  open("MAGNET");
  EXPECT_EQ(line,
            "Project read: 8 properties, 2 history rows, 2 alarm watch rows, 4 device names; 6 "
            "backups made. 1 device name not yet written.")
      << "a list that was read has one more";
  // Its history was kept when it was of another format.
  const std::string replaced =
      "Property FIELD replaced. Its history row keeps its earlier settings; those in the form are "
      "ignored.";
  form.PropertyList.select(6);
  form.EditCmd.click();
  EXPECT_EQ(line, replaced);
  type(form.PropertyDescription, "Wanted");
  form.EditCmd.click();
  EXPECT_EQ(line, replaced + " 1 property not yet written.");
  type(form.PropertyDescription, "Field at the probes");
  form.EditCmd.click();
  EXPECT_EQ(line, replaced);
}

TEST_F(Status, RemovalsCountAndSayHowTheyAreUndone) {
  project("S", {"ONE,SEQM,P,1,short,0,NULL,1,READ,1,[0:9 V]a,0",
                "TWO,SEQM,P,1,short,0,NULL,2,READ,1,[0:9 V]b,0"});
  open("S");
  remove(0);
  EXPECT_EQ(line, "Property P removed. 1 removal not yet written.") << "known by both names";

  open("MAGNET");
  remove(5);
  remove(5);
  EXPECT_EQ(line,
            "Property FIELD removed: Add puts it back. 5 device names, 2 removals not yet written.")
      << "its names come from another file than devices.csv";
}

TEST_F(Status, EachDoneTellsOnceWhatSomebodyElseHasWritten) {
  const std::string kept =
      " exports.csv was changed by someone else; that version was saved as exports-170000000";
  open("MAGNET");
  home.write("MAGNET/exports.csv", "by a colleague");
  std::filesystem::create_directory(home.path("MAGNET/devices.csv"));
  form.Command1.click();
  EXPECT_EQ(line, "The project is not finished." + kept + "1.csv. 5 device names not yet written.");
  EXPECT_EQ(home.read("MAGNET/exports-1700000001.csv"), "by a colleague");
  EXPECT_EQ(engineer.programs.started, Lines{});
  form.Command1.click();
  EXPECT_EQ(line, "The project is not finished. 5 device names not yet written.");

  home.write("MAGNET/exports.csv", "by another");
  std::filesystem::remove(home.path("MAGNET/devices.csv"));
  form.Command1.click();
  EXPECT_TRUE(engineer.ended);
  EXPECT_EQ(status(), "All tables written." + kept + "2.csv.");
  engineer.ended = false;
  form.Command1.click();
  EXPECT_FALSE(engineer.ended) << "once is enough";
  for (int i = 0; i < 2; ++i) said();
}

TEST_F(Status, WhatSomebodyElseHasWrittenIsKeptWhereTheClockStandsStill) {
  engineer.clock.now = std::numeric_limits<std::int32_t>::max();
  open("MAGNET");
  home.write("MAGNET/exports.csv", "by a colleague");
  form.Command1.click();
  EXPECT_TRUE(engineer.ended) << "the backup made at the opening has the name of that second";
  EXPECT_EQ(home.read("MAGNET/exports-2147483646.csv"), "by a colleague");
}

TEST_F(Status, AnEntryTellsWhatItDroppedAndWhatItCouldNotRead) {
  std::filesystem::copy(home.path("MAGNET"), home.path("MAGNETS"));
  std::filesystem::remove(home.path("MAGNETS/history.csv"));
  std::filesystem::create_directory(home.path("MAGNETS/history.csv"));
  home.write("MAGNETS/almwatch.csv", "property,size\r\nFIELD,99999999999\r\n");
  open("MAGNET");
  remove(0);
  open("MAGNETS");
  EXPECT_EQ(line,
            "1 unwritten removal dropped by the change of directory. Project read: 8 properties, 0 "
            "history rows, 0 alarm watch rows, 4 device names; 4 backups made. history.csv can't "
            "be read: Is a directory. Reading almwatch.csv stopped at line 2: 99999999999 is "
            "outside -2147483648 to 2147483647. 5 device names not yet written.")
      << "and what had not been written there counts no more";
}

TEST_F(Status, AChangeOfDirectoryDropsUnwrittenRowsOnly) {
  EXPECT_EQ(at(form.ExportName), "");
  pumps();
  const std::string drops = "A change here drops 1 property not yet written.";
  EXPECT_EQ(at(form.ExportName), drops);
  EXPECT_EQ(at(form.ProjectDir), drops);
  EXPECT_EQ(at(form.Units), "");
  open("PUMPSX");
  EXPECT_EQ(status(), "1 unwritten row dropped by the change of directory.");
  type(form.LocalName, "PUMEQM");
  form.ProjectDir.click();
  commit("Q");
  EXPECT_EQ(at(form.ExportName), "") << "it leads nowhere now";
  EXPECT_EQ(at(form.ProjectDir), drops);
}

TEST_F(Status, DoneAndAddSayWhatTheyWouldDo) {
  EXPECT_EQ(atDone(), "There are no properties: Done writes nothing.");
  pumps();
  EXPECT_EQ(atDone(), "Done writes exports.csv (1 row).");
  form.HistoryCheck.setValue(1);
  EXPECT_EQ(atDone(),
            "Done writes exports.csv (1 row). The form differs from P. These changes will not be "
            "written.");
  form.AlarmWatchCheck.setValue(1);
  form.EditCmd.click();
  EXPECT_EQ(atDone(), "Done writes exports.csv (1 row), history.csv (1 row), almwatch.csv.");
  commit("Q");
  type(form.PropertyName, "STATE");
  EXPECT_EQ(
      atDone(),
      "Done writes exports.csv (2 rows), history.csv (1 row and one for STATE, the property in the "
      "form), almwatch.csv. STATE has not been added; Done writes only a history row for it.");
  type(form.ArchiveHeartbeatText, "often");
  EXPECT_EQ(
      atDone(),
      "Done writes exports.csv (2 rows) and then fails: Could not write history.csv : Heartbeat: "
      "\"often\" is not a number. STATE has not been added and will not be written.");

  form.ProcessCheck.setValue(1);
  EXPECT_EQ(at(form.PropertyName), "Add creates a process of five rows.");
}

TEST_F(Status, NamesWithoutADevice) {
  open("MAGNET");
  type(form.NumDevices, "12");
  typeAndLeave(form.deviceNamesInputText, "a\r\nb\r\nc\r\nd");
  type(form.NumDevices, "1");
  tells("11 device names dropped: the number of devices fell to 1.");
  type(form.NumDevices, "13");
  form.ServerOption.select();
  type(form.NumDevices, "2");
  typeAndLeave(form.deviceNamesInputText, "a\r\nb\r\nc\r\nd\r\n");
  tells("2 lines of the device box ignored: more lines than devices.");
}

TEST_F(Status, NamesThatAReaderSkipsOrDoesNotFind) {
  const std::string row = "PUMPS,PUMEQM,P,1,short,0,NULL,1,READ,2,[0:9 V]P,0";
  std::string names = "DEVICE_NUMBER,DEVICE_NAME\r\n";
  for (int i = 0; i < 10; ++i) names += std::to_string(i) + ",N\r\n";
  project("PUMPS", {row});
  home.write("PUMPS/PUMEQM-devices.csv", names);
  open("PUMPS");
  tells(
      "7 lines of PUMEQM-devices.csv skipped: device number out of range. Done writes devices.csv "
      "without them.");
  home.write("PUMPS/P-names.csv", names);
  form.PropertyList.select(0);
  tells(
      "7 lines of P-names.csv skipped: device number out of range. Done writes P-names.csv without "
      "them.");
  std::filesystem::rename(home.path("PUMPS/PUMEQM-devices.csv"), home.path("PUMPS/devices.csv"));
  open("PUMP");
  open("PUMPS");
  tells(
      "devices.csv is not read: device names are read from PUMEQM-devices.csv, which is missing.");
}

}  // namespace
}  // namespace kova::test
