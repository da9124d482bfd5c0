// SPDX-License-Identifier: MIT
// The status line: what it tells of an act, and what it counts as not yet on disk.
#include <filesystem>

#include "support/flow.h"

namespace kova::test {
namespace {

struct Status : Flow {
  Status() {
    wizard.statusLine.notifyView = [this] { line = status(); };
  }

  void remove(int row) {
    form.PropertyList.select(row);
    form.RemoveProperty.click();
  }

  Wizard& wizard = engineer.program.wizard;
  std::string line;  ///< as the window shows it
};

TEST_F(Status, ANewServerCountsUntilDoneHasWrittenIt) {
  letters(form.ExportName, "PUMPS");
  commit("P");
  EXPECT_EQ(line, "Property P added. 1 property not yet written.") << "Done would write no names";
  type(form.NumDevices, "2");
  form.NumDevices.lostFocus();
  type(form.deviceNamesInputText, "North\r\nSouth");
  form.deviceNamesInputText.lostFocus();
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
  for (int i = 0; i < 2; ++i) said();
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
            "be read: "
            "Is a directory. Reading almwatch.csv stopped at line 2: 99999999999 is outside "
            "-2147483648 to 2147483647. 5 device names not yet written.")
      << "and what had not been written there counts no more";
}

}  // namespace
}  // namespace kova::test
