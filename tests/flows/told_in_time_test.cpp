// SPDX-License-Identifier: MIT
// What would vanish without a word, told when it happens or before.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "support/flow.h"
#include "wizard/focus_sentence.h"

namespace kova::test {
namespace {

class ToldInTime : public Flow {
 protected:
  std::string at(TextField& field) { return focusSentence(engineer.program.wizard, &field); }
  std::string atDone() { return focusSentence(engineer.program.wizard, &form.Command1); }
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
  void startsWith(const std::string& sentence) {
    EXPECT_EQ(status().substr(0, sentence.size()), sentence);
  }
};

TEST_F(ToldInTime, AChangeOfDirectoryDropsUnwrittenRowsOnly) {
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

TEST_F(ToldInTime, APreparedListGoesWithItsDirectory) {
  open("PUMPS");
  type(form.PropertyName, "P");
  type(form.OutputDataSize, "2");
  form.DeviceListCheck.setValue(1);
  open("PUMPSX");
  startsWith("The device list prepared for P went with the directory.");
}

TEST_F(ToldInTime, DoneSaysWhatItWouldWrite) {
  EXPECT_EQ(atDone(), "There are no properties: Done writes nothing.");
  pumps();
  EXPECT_EQ(atDone(), "Done writes exports.csv (1 row).");
  form.HistoryCheck.setValue(1);
  EXPECT_EQ(atDone(),
            "Done writes exports.csv (1 row). The form differs from P and is not part of it.");
  form.AlarmWatchCheck.setValue(1);
  form.EditCmd.click();
  EXPECT_EQ(atDone(), "Done writes exports.csv (1 row), history.csv (1 row), almwatch.csv.");
  type(form.PropertyName, "STATE");
  EXPECT_EQ(atDone(),
            "Done writes exports.csv (1 row), history.csv (1 row and one for STATE, which stands "
            "in the form), almwatch.csv. STATE stands in the form only and is not part of it.");
  type(form.ArchiveHeartbeatText, "often");
  EXPECT_EQ(atDone().substr(0, 60), "Done writes exports.csv (1 row) and then ends with: Could no");
}

TEST_F(ToldInTime, AllIsWrittenBeforeTheGeneratorsStart) {
  pumps();
  form.vbProject.setValue(1);
  engineer.programs.failure = "no such program";
  form.Command1.click();
  EXPECT_EQ(said().substr(0, 15), "Could not start");
  EXPECT_EQ(status(), "All tables written.");
  engineer.messages.clear();
}

TEST_F(ToldInTime, NamesWithoutADevice) {
  open("MAGNET");
  type(form.NumDevices, "12");
  type(form.deviceNamesInputText, "a\r\nb\r\nc\r\nd");
  form.deviceNamesInputText.lostFocus();
  type(form.NumDevices, "1");
  startsWith("11 device names dropped: the number of devices fell to 1.");
  type(form.NumDevices, "13");
  form.ServerOption.select();
  type(form.NumDevices, "2");
  type(form.deviceNamesInputText, "a\r\nb\r\nc\r\nd\r\n");
  form.deviceNamesInputText.lostFocus();
  startsWith("2 lines of the device box beyond the number of devices not taken.");
}

TEST_F(ToldInTime, NamesThatAReaderSkipsOrDoesNotFind) {
  const std::string row = "PUMPS,PUMEQM,P,1,short,0,NULL,1,READ,2,[0:9 V]P,0";
  project("PUMPS", {row});
  names("PUMPS/PUMEQM-devices.csv", 10);
  open("PUMPS");
  EXPECT_NE(status().find("7 lines of PUMEQM-devices.csv beyond the number of devices skipped: "
                          "Done writes devices.csv without them."),
            std::string::npos)
      << status();
  names("PUMPS/P-names.csv", 10);
  form.PropertyList.select(0);
  startsWith(
      "7 lines of P-names.csv beyond the number of devices skipped: Done writes P-names.csv "
      "without them.");
  std::filesystem::rename(home.path("PUMPS/PUMEQM-devices.csv"), home.path("PUMPS/devices.csv"));
  open("PUMP");
  open("PUMPS");
  EXPECT_NE(status().find("devices.csv is not read: device names are read from "
                          "PUMEQM-devices.csv, which is missing."),
            std::string::npos)
      << status();
}

TEST_F(ToldInTime, RowsOfTheOtherTablesThatStayOrComeAgain) {
  pumps();
  form.HistoryCheck.setValue(1);
  form.AlarmWatchCheck.setValue(1);
  form.EditCmd.click();
  startsWith("Property P replaced. 1 property");
  form.EditCmd.click();
  startsWith("Property P replaced. It has a further alarm watch row; the former ones stay.");
  type(form.PollRateText, "77");
  form.EditCmd.click();
  startsWith("Property P replaced. Its history row keeps its first settings;");
}

TEST_F(ToldInTime, TheFocusOnAnAlarmFieldClearsTheOtherKind) {
  type(form.almHiText, "5");
  form.almMaskText.gotFocus();
  startsWith("The four limits are set to 0: this alarm watches a mask.");
  type(form.almMaskText, "3");
  form.almLoText.gotFocus();
  startsWith("Mask and normal value are set to 0: this alarm watches limits.");
}

TEST_F(ToldInTime, RemoveSaysHowToUndoItAndWhenItIsIdle) {
  pumps();
  form.RemoveProperty.click();
  startsWith("Property P removed: Add puts it back.");
  form.RemoveProperty.click();
  EXPECT_EQ(status(), "Nothing removed: no line of the list is selected.");
}

TEST_F(ToldInTime, GuidanceSetsTheNumberOfDevices) {
  type(form.NumDevices, "3");
  form.srvGuide.click();
  ExportHelper& guide = engineer.program.helper;
  type(guide.ParamText, "PUMPS");
  guide.nextParam.click();
  guide.nextParam.click();
  type(guide.ParamText, "1");
  guide.DoneParam.click();
  EXPECT_NE(status().find("Guidance has set the number of devices from 3 to 1."), std::string::npos)
      << status();
}

TEST_F(ToldInTime, AProcessIsToldWhileItsNameIsTyped) {
  open("PUMPS");
  type(form.PropertyName, "P");
  form.ProcessCheck.setValue(1);
  type(form.PropertyName, "PQ");
  EXPECT_EQ(at(form.PropertyName), "Add would make a process of five rows.");
}

TEST_F(ToldInTime, AListThatCannotBeMadeOrIsGivenUp) {
  pumps();
  type(form.PropertyName, "Q");
  type(form.OutputDataSize, "-1");
  form.DeviceListCheck.setValue(1);
  EXPECT_FALSE(form.DeviceListCheck.ticked());
  startsWith("No device list: the size is negative. The tick is taken back.");
  type(form.OutputDataSize, "2");
  form.DeviceListCheck.setValue(1);
  form.PropertyList.select(0);
  type(form.PropertyName, "Q");
  type(form.OutputDataSize, "5");
  form.DeviceListCheck.setValue(1);
  const std::string& box = form.deviceNamesInputText.text();
  EXPECT_EQ(std::count(box.begin(), box.end(), '\n'), 5);
}

}  // namespace
}  // namespace kova::test
