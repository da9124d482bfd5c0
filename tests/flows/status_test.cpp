// SPDX-License-Identifier: MIT
// The status line: what it counts as not yet on disk.
#include "core/status.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "support/engineer.h"

namespace kova::test {
namespace {

const std::string header =
    "EXPORT_NAME,LOCAL_NAME,PROPERTY,PROPERTY_SIZE,FORMAT,PROPERTY_INSIZE,INFORMAT,PROPERTY_ID,"
    "ACCESS,NUM_MODULES,DESCRIPTION,NUM_STEPS\r\n";

/// A wizard in whose home lies the project MAGNET: three properties, three devices with names.
class Status : public testing::Test {
 protected:
  Status() {
    std::filesystem::create_directory(home.path("MAGNET"));
    home.write("MAGNET/exports.csv",
               header +
                   "MAGNET,MAGEQM,FIELD,2,float,0,NULL,1,READ,3,[0:2 T]Field,0\r\n"
                   "MAGNET,MAGEQM,STATE,1,short,0,NULL,2,READ,3,[0:9 V]State,0\r\n"
                   "MAGNET,MAGEQM,SET,1,double,1,double,3,READ|WRITE,3,[0:2 T]Set point,0\r\n");
    home.write("MAGNET/MAGEQM-devices.csv",
               "DEVICE_NUMBER,DEVICE_NAME\r\n0,Quad\r\n1,Sext\r\n2,Dipole\r\n");
    wizard.statusLine.mirror = [this] { shown = statusText(wizard); };
    engineer.start();
    form.vbProject.setValue(0);
  }

  static void type(TextField& field, const std::string& text) { field.edit(text, text.size()); }
  void nameDevices(const std::string& lines) {
    type(form.deviceNamesInputText, lines);
    form.deviceNamesInputText.lostFocus();
  }
  /// A property with a history, an alarm watch and two devices of its own, on a server of two.
  void defineServer() {
    type(form.ExportName, "PUMPS");
    type(form.LocalName, "PUMEQM");
    type(form.NumDevices, "2");
    form.NumDevices.lostFocus();
    nameDevices("North\r\nSouth");
    type(form.PropertyName, "P");
    type(form.OutputDataSize, "1");
    form.HistoryCheck.setValue(1);
    form.AlarmWatchCheck.setValue(1);
    form.DeviceListCheck.setValue(1);
    form.EditCmd.click();
  }
  void select(std::int32_t row) { form.PropertyList.select(row); }
  void remove(std::int32_t row) {
    select(row);
    form.RemoveProperty.click();
  }
  std::string unwritten() { return statusText(wizard).substr(wizard.statusLine.sentence.size()); }

  TemporaryFolder home;
  Engineer engineer{home.path()};
  Wizard& wizard = engineer.program.wizard;
  Form1& form = wizard.form;
  std::string shown;
};

TEST_F(Status, RowsOfAllTablesCount) {
  defineServer();
  EXPECT_EQ(shown,
            "Property P added. 1 property, 1 history row, 1 alarm watch row, 4 device names not "
            "yet written.");

  form.EditCmd.click();
  form.EditCmd.click();
  EXPECT_EQ(shown,
            "Property P replaced. 1 property, 1 history row, 3 alarm watch rows, 4 device names "
            "not yet written.");
}

TEST_F(Status, NamesThatDoneWouldNotWriteDoNotCount) {
  type(form.ExportName, "PUMPS");
  type(form.LocalName, "PUMEQM");
  type(form.PropertyName, "P");
  form.EditCmd.click();
  EXPECT_EQ(shown, "Property P added. 1 property not yet written.");
}

TEST_F(Status, AProjectThatWasReadCountsWhereItDiffers) {
  type(form.ExportName, "MAGNET");
  EXPECT_EQ(shown,
            "Project read: 3 properties, 0 history rows, 0 alarm watch rows, 3 device names; 2 "
            "backups made.");

  for (const std::int32_t row : {0, 1, 2}) {
    select(row);
    form.EditCmd.click();
  }
  EXPECT_EQ(shown, "Property SET replaced.");

  type(form.PropertyDescription, "Wanted");
  form.EditCmd.click();
  EXPECT_EQ(shown, "Property SET replaced. 1 property not yet written.");

  type(form.PropertyDescription, "Set point");
  form.EditCmd.click();
  EXPECT_EQ(shown, "Property SET replaced.");
}

TEST_F(Status, RemovalsCountUnlessTheDiskNeverHeldTheRow) {
  type(form.ExportName, "MAGNET");
  remove(0);
  EXPECT_EQ(shown, "Property FIELD removed. 1 removal not yet written.");
  remove(0);
  EXPECT_EQ(shown, "Property STATE removed. 2 removals not yet written.");

  form.EditCmd.click();
  EXPECT_EQ(shown, "Property STATE added. 1 property, 2 removals not yet written.");
  remove(1);
  EXPECT_EQ(shown, "Property STATE removed. 2 removals not yet written.");
}

TEST_F(Status, RowsAreKnownByBothNames) {
  home.write("MAGNET/exports.csv", header +
                                       "ONE,MAGEQM,P,1,short,0,NULL,1,READ,3,[0:9 V]a,0\r\n"
                                       "TWO,MAGEQM,P,1,short,0,NULL,2,READ,3,[0:9 V]b,0\r\n");
  type(form.ExportName, "MAG");
  type(form.ExportName, "MAGNET");
  remove(0);
  EXPECT_EQ(shown, "Property P removed. 1 removal not yet written.");
}

TEST_F(Status, TheNumberOfDevicesStandsInEachRow) {
  type(form.ExportName, "MAGNET");
  type(form.NumDevices, "2");
  EXPECT_EQ(unwritten(), " 3 properties, 1 removal not yet written.") << "the name of the third";

  type(form.NumDevices, "3");
  EXPECT_EQ(unwritten(), " 1 device name not yet written.") << "it does not come back";
}

TEST_F(Status, DeviceNamesCountOneByOne) {
  type(form.ExportName, "MAGNET");
  nameDevices("Quad\r\nSextupole\r\nDipole\r\n");
  EXPECT_EQ(unwritten(), " 1 device name not yet written.");

  home.write("MAGNET/FIELD-names.csv", "DEVICE_NUMBER,DEVICE_NAME\r\n0,Left\r\n1,Right\r\n");
  select(0);
  EXPECT_EQ(unwritten(), " 1 device name not yet written.") << "those of FIELD are on disk";
  type(form.deviceNamesInputText, "Left\r\nTop\r\n\r\n");
  form.EditCmd.click();
  EXPECT_EQ(unwritten(), " 2 device names not yet written.");

  form.DeviceListCheck.setValue(0);
  EXPECT_EQ(unwritten(), " 1 device name not yet written.") << "a list that was given up";
}

TEST_F(Status, ADoneThatFailsHalfwayLeavesOnlyWhatItHasNotWritten) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"history.csv", "1 history row, 1 alarm watch row, 4 device names"},
      {"almwatch.csv", "1 alarm watch row, 4 device names"},
      {"devices.csv", "4 device names"},
      {"P-names.csv", "2 device names"}};
  defineServer();
  for (const auto& [table, left] : cases) {
    std::filesystem::create_directories(home.path("PUMPS/" + table));
    form.Command1.click();
    EXPECT_EQ(shown, "The project is not finished. " + left + " not yet written.");
    EXPECT_EQ(engineer.messages.back(), "Could not write " + table + " : Is a directory");
    std::filesystem::remove(home.path("PUMPS/" + table));
  }

  form.AlarmWatchCheck.setValue(0);
  type(form.Units, "mbar");
  form.EditCmd.click();
  EXPECT_EQ(shown, "Property P replaced. 1 property, 2 device names not yet written.");
  form.Command1.click();
  EXPECT_TRUE(engineer.ended);
  EXPECT_EQ(unwritten(), "");
}

TEST_F(Status, EachDoneTellsOnceWhatSomebodyElseHasWritten) {
  type(form.ExportName, "MAGNET");
  home.write("MAGNET/exports.csv", "by a colleague");
  std::filesystem::create_directory(home.path("MAGNET/devices.csv"));
  form.Command1.click();
  EXPECT_EQ(shown,
            "The project is not finished. What somebody else has written to exports.csv since is "
            "kept as exports-1700000001.csv. 1 device name not yet written.")
      << "Done has named the device without a name";
  form.Command1.click();
  EXPECT_EQ(shown, "The project is not finished. 1 device name not yet written.");

  home.write("MAGNET/exports.csv", "by another");
  std::filesystem::remove(home.path("MAGNET/devices.csv"));
  form.Command1.click();
  EXPECT_TRUE(engineer.ended);
  EXPECT_EQ(statusText(wizard),
            "What somebody else has written to exports.csv since is kept as "
            "exports-1700000002.csv.");
}

TEST_F(Status, AnEntryTellsWhatItDroppedAndWhatItCouldNotRead) {
  std::filesystem::copy(home.path("MAGNET"), home.path("MAGNETS"));
  std::filesystem::create_directory(home.path("MAGNETS/history.csv"));
  home.write("MAGNETS/almwatch.csv", "property,size\r\nFIELD,99999999999\r\n");
  type(form.ExportName, "MAGNET");
  type(form.ExportName, "MAGNETS");
  EXPECT_EQ(shown,
            "3 rows dropped by the change of directory. Project read: 3 properties, 0 history "
            "rows, 0 alarm watch rows, 3 device names; 3 backups made. history.csv can't be read: "
            "Is a directory. Reading almwatch.csv stopped at line 2: 99999999999 is outside "
            "-2147483648 to 2147483647.");
}

TEST_F(Status, ADirectoryThatIsLeftCountsNoMore) {
  type(form.ExportName, "MAGNET");
  remove(0);
  type(form.ExportName, "MAGNETS");
  EXPECT_EQ(shown, "2 rows dropped by the change of directory. 4 device names not yet written.")
      << "the names go along to the next server";

  type(form.ExportName, "MAGNET");
  EXPECT_EQ(unwritten(), "");
}

}  // namespace
}  // namespace kova::test
