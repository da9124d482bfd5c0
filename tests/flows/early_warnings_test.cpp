// SPDX-License-Identifier: MIT
// What would vanish without a word, told when it happens or before.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "support/flow.h"
#include "wizard/focus_message.h"

namespace kova::test {
namespace {

class EarlyWarnings : public Flow {
 protected:
  std::string at(TextField& field) { return focusMessage(engineer.program.wizard, &field); }
  std::string atDone() { return focusMessage(engineer.program.wizard, &form.Command1); }
  void names(const std::string& file, int count) const {
    std::string table = "DEVICE_NUMBER,DEVICE_NAME\r\n";
    for (int i = 0; i < count; ++i) table += std::to_string(i) + ",N" + std::to_string(i) + "\r\n";
    home.write(file, table);
  }
  void pumps() {
    open("PUMPS");
    type(form.LocalName, "PUMEQM");
    commit("P");
  }
  void tells(const std::string& message) {
    EXPECT_LT(status().find(message), status().size()) << status();
  }
};

TEST_F(EarlyWarnings, AChangeOfDirectoryDropsUnwrittenRowsOnly) {
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

TEST_F(EarlyWarnings, DoneAndAddSayWhatTheyWouldDo) {
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
  type(form.PropertyName, "STATE");
  EXPECT_EQ(atDone(),
            "Done writes exports.csv (1 row), history.csv (1 row and one for STATE, the property "
            "in the form), almwatch.csv. STATE has not been added; Done writes only a history row "
            "for it.");
  type(form.ArchiveHeartbeatText, "often");
  EXPECT_EQ(
      atDone(),
      "Done writes exports.csv (1 row) and then fails: Could not write history.csv : Heartbeat: "
      "\"often\" is not a number. STATE has not been added and will not be written.");

  form.ProcessCheck.setValue(1);
  EXPECT_EQ(at(form.PropertyName), "Add creates a process of five rows.");
}

TEST_F(EarlyWarnings, AllIsWrittenBeforeTheGeneratorsStart) {
  pumps();
  form.vbProject.setValue(1);
  engineer.programs.failure = "no such program";
  form.Command1.click();
  EXPECT_EQ(said().substr(0, 15), "Could not start");
  EXPECT_EQ(status(), "All tables written.");
  engineer.messages.clear();
}

TEST_F(EarlyWarnings, NamesWithoutADevice) {
  open("MAGNET");
  type(form.NumDevices, "12");
  type(form.deviceNamesInputText, "a\r\nb\r\nc\r\nd");
  form.deviceNamesInputText.lostFocus();
  type(form.NumDevices, "1");
  tells("11 device names dropped: the number of devices fell to 1.");
  type(form.NumDevices, "13");
  form.ServerOption.select();
  type(form.NumDevices, "2");
  type(form.deviceNamesInputText, "a\r\nb\r\nc\r\nd\r\n");
  form.deviceNamesInputText.lostFocus();
  tells("2 lines of the device box ignored: more lines than devices.");
}

TEST_F(EarlyWarnings, NamesThatAReaderSkipsOrDoesNotFind) {
  const std::string row = "PUMPS,PUMEQM,P,1,short,0,NULL,1,READ,2,[0:9 V]P,0";
  project("PUMPS", {row});
  names("PUMPS/PUMEQM-devices.csv", 10);
  open("PUMPS");
  tells(
      "7 lines of PUMEQM-devices.csv skipped: device number out of range. Done writes devices.csv "
      "without them.");
  names("PUMPS/P-names.csv", 10);
  form.PropertyList.select(0);
  tells(
      "7 lines of P-names.csv skipped: device number out of range. Done writes P-names.csv "
      "without them.");
  std::filesystem::rename(home.path("PUMPS/PUMEQM-devices.csv"), home.path("PUMPS/devices.csv"));
  open("PUMP");
  open("PUMPS");
  tells(
      "devices.csv is not read: device names are read from PUMEQM-devices.csv, which is missing.");
}

}  // namespace
}  // namespace kova::test
