// SPDX-License-Identifier: MIT
// The property form: what its controls commit and show, processes, device lists, the alarm panel.
#include <algorithm>
#include <map>

#include "editing/device_panel.h"
#include "support/flow.h"

namespace kova::test {
namespace {

struct Editing : Flow {
  void nameServer() {
    open("MYSRV");
    type(form.LocalName, "MYSRV");
  }
  /// A server S with properties P0, P1, ...
  void openRows(int count) {
    Lines rows;
    for (int i = 0; i < count; ++i) {
      rows.push_back("S,SEQM,P" + std::to_string(i) + ",1,double,0,NULL,1,READ,1,d,0");
    }
    project("S", rows);
    open("S");
  }
  /// Gives fields, by their names, numbers from `first` on.
  void number(int first) {
    for (const std::string& field :
         words("PropertyDescription Units MaxValue MinValue OutputDataSize InputDataSize "
               "historyDeviceText ArchiveRateText PollRateText ArchiveHeartbeatText ShortDepthText "
               "LongDepthText toleranceText almwDeviceText AlmSystemText almSeverityText "
               "almCountThreshText almHiText almLoText almHiWarnText almLoWarnText almMaskText "
               "almNormalText")) {
      engineer.field(field).setText(std::to_string(first++));
    }
  }
  const std::string& names() const { return form.deviceNamesInputText.text(); }
};

TEST_F(Editing, AddAsksFirstAndTakesNoNameTwice) {
  std::string question =
      "Add New Property with these characteristics ?: "
      "Adding the following Property information : \r\n\r\n"
      " Export Name : MAGNET\r\n"
      " Local Name : MAGNET\r\n"
      " Property Name : NEW\r\n"
      " Return Data  : 4 float values (CHANNEL)\r\n"
      " Input Data  : 3 short values\r\n"
      " Property Access : READ|WRITE\r\n"
      " Maximum Value : 250\r\n"
      " Minimum Value : 0\r\n"
      " Data Units : A\r\n"
      " Description : Current of each supply\r\n"
      " Keep History: Yes\r\n"
      " Use Alarm Watch : No\r\n"
      " Has Device list : No\r\n";
  open("MAGNET");
  type(form.LocalName, "MAGNETS");
  EXPECT_EQ(said(), truncated + "MAGNET");
  type(form.PropertyName, "NEW");
  form.InputDataFormat.setText("Integer");
  type(form.InputDataSize, "3");
  toggle(form.HistoryCheck);
  engineer.answers = {Answer::cancel};
  for (const int rows : {8, 9}) {
    form.AddProperty.click();
    EXPECT_EQ(said(), question);
    EXPECT_EQ(engineer.rows().properties, rows);
  }
  EXPECT_EQ(form.PropertyList.selectedIndex(), 8);

  form.InputDataFormat.setText("NULL");
  question.replace(question.find("3 short values"), 14, "none");
  form.AddProperty.click();
  EXPECT_EQ(said(), question);
  EXPECT_EQ(said(), "Property NEW already assigned");
}

TEST_F(Editing, ACommitTakesWhatTheFormAndItsPanelsHoldAndASelectionShowsIt) {
  open("MYSRV");
  type(form.LocalName, "MYSERVER");
  EXPECT_EQ(said(), truncated + "MYSERV");
  number(2);
  form.InputDataFormat.setText("Long");
  form.OutputDataFormat.setText("Integer");
  form.ArrayTypeCombo.setText("CHANNEL");
  type(form.PropertyName, "P");
  toggle(form.HistoryCheck);
  toggle(form.AlarmWatchCheck);
  form.EditCmd.click();
  number(52);
  form.InputDataFormat.setText("NULL");
  EXPECT_EQ(form.InputDataSize.text(), "0");
  commit("NONE");
  EXPECT_EQ(shown(form.HistoryCheck, form.AlarmWatchCheck), "clear, clear");

  form.PropertyList.select(0);
  EXPECT_EQ(shown(form.HistoryCheck, form.AlarmWatchCheck), "ticked, ticked");
  EXPECT_EQ(shown(form.PropertyDescription, form.Units, form.MaxValue, form.MinValue,
                  form.OutputDataSize, form.InputDataFormat, form.InputDataSize),
            "2, 3, 4, 5, 6, Long, 7");
  EXPECT_EQ(shown(form.ArchiveRateText, form.PollRateText, form.ShortDepthText, form.LongDepthText,
                  form.toleranceText),
            "9, 10, 12, 13, 14");
  EXPECT_EQ(shown(form.AlmSystemText, form.almCountThreshText, form.almHiText, form.almLoText,
                  form.almHiWarnText, form.almLoWarnText, form.almMaskText, form.almNormalText),
            "16, 18, 19, 20, 21, 22, 23, 24");
  type(form.PropertyName, "FORM");
  form.Command1.click();
  EXPECT_EQ(tableRows("MYSRV/exports.csv"),
            (Lines{"MYSRV,MYSERV,P,6,short.CHANNEL,7,long, 1,READ, 1,[5:4 3]2,0",
                   "MYSRV,MYSERV,NONE,56,short.CHANNEL,0,NULL, 2,READ, 1,[55:54 53]52,0"}));
  EXPECT_EQ(tableRows("MYSRV/history.csv"),
            (Lines{" 1,MYSRV,MYSERV,P,8, 6,LONG.CHANNEL, 11, 10, 9,14, 12, 13",
                   " 2,MYSRV,MYSERV,FORM,58, 6,short, 61, 10, 9,14, 12, 13"}))
      << "the last one for what stands in the form";
  EXPECT_EQ(tableRows("MYSRV/almwatch.csv"),
            Lines{"MYSERV,15,P, 6,LONG.CHANNEL, 17, 16, 19, 20, 21, 22,23,24"});
  EXPECT_EQ(home.files("MYSRV").size(), 3);
}

TEST_F(Editing, EachFormatOfTheListIsCommittedWithItsSingleValue) {
  const Lines formats = words(
      "double short BYTE long char float POCALBLK struct NAME8 NAME16 NAME16FI BIT HITTS NAME32 "
      "FLTINT LNGINT DBLINT SHTINT TDS NAME48 NAME8I NAME16I NAME32I NAME48I USTRING FLTFLTINT "
      "FILTER IFFF ADDRESS WINDOW POINT TDSI BOOLEAN DEFAULT NULL");
  std::map<std::string, std::string> singleValues = {
      {"short", "LONG"}, {"long", "LONG"}, {"LNGINT", "LONG"}, {"ADDRESS", "LONG"}};
  for (const std::string& name : words("NAME8 NAME16 NAME32 NAME48")) singleValues[name] = name;
  ASSERT_EQ(form.OutputDataFormat.entries().size(), formats.size());
  for (std::int32_t index = 0; const std::string& format : formats) {
    form.OutputDataFormat.select(index);
    form.InputDataFormat.select(index++);
    const FormTexts texts = formTexts(engineer.program.wizard);
    EXPECT_EQ(texts.outputFormat, format);
    EXPECT_EQ(texts.inputFormat, format);
    const std::string& single = singleValues.try_emplace(format, "FLOAT").first->second;
    EXPECT_EQ(texts.singleValue, single) << format;
  }
}

TEST_F(Editing, AValueThatDoesNotFitIsNamedAndChangesNothing) {
  const std::vector<std::pair<std::string, std::string>> fields = {
      {"ArchiveRateText", "Archive Rate (secs)"},
      {"PollRateText", "Polling Rate (msec)"},
      {"ArchiveHeartbeatText", "Archive Heartbeat (secs)"},
      {"ShortDepthText", "Ringbuffer Depth"},
      {"LongDepthText", "Long term Depth (months)"},
      {"OutputDataSize", "Max Data Size"},
      {"AlmSystemText", "Alarm System ID"},
      {"almCountThreshText", "Counts Threshold"},
      {"almSeverityText", "Severity (high)"},
      {"almHiText", "Value too high"},
      {"almLoText", "Value too low"},
      {"almHiWarnText", "warning"},
      {"almLoWarnText", "warning"},
      {"NumStepsText", "Number Steps :"}};
  nameServer();
  type(form.PropertyName, "P");
  toggle(form.AlarmWatchCheck);
  toggle(form.HistoryCheck);
  TextField* led = nullptr;
  for (const auto& [name, caption] : fields) {
    TextField& field = engineer.field(name);
    field.takeFocus = [&] { led = &field; };
    form.ProcessCheck.setValue(name == "NumStepsText" ? 1 : 0);
    const std::string before = field.text();
    type(field, "1E999");
    form.EditCmd.click();
    EXPECT_EQ(said(), "Could not add P : " + caption + " is not a valid number");
    EXPECT_EQ(led == &field, !field.onGotFocus) << "an alarm field would clear others";
    EXPECT_EQ(engineer.rows(), Rows{});
    type(field, before);
  }
  form.LocalName.takeFocus = [&] { led = &form.LocalName; };
  type(form.LocalName, "");
  form.EditCmd.click();
  EXPECT_EQ(said(), "Not a valid Local Name");
  EXPECT_EQ(led, &form.LocalName);
  type(form.LocalName, "MYSRV");
  form.ProcessCheck.setValue(0);
  Project& full = engineer.program.wizard.state.project;
  full.historyTable = {{}};
  full.historyTable[0].index = 32767;
  full.historyCount = 1;
  form.EditCmd.click();
  EXPECT_EQ(said(), "Could not add P : the history table has no free index");
  EXPECT_EQ(engineer.rows(), Rows{.history = 1});
}

TEST_F(Editing, AProcessHasStepsAndNoDeviceList) {
  nameServer();
  type(form.PropertyName, "RAMP");
  toggle(form.ProcessCheck);
  EXPECT_TRUE(form.NumStepsText.enabled());
  std::string selected;
  form.NumStepsText.selectAll = [&] { selected = form.NumStepsText.text(); };
  type(form.NumStepsText, "");
  EXPECT_EQ(shown(form.NumStepsText) + selected, "11");
  toggle(form.DeviceListCheck);
  form.EditCmd.click();
  EXPECT_EQ(status(),
            "Process property RAMP added as 5 rows. 5 properties, 1 device name not yet "
            "written.");
  EXPECT_EQ(lines()[1], "[MYSRV] RAMP.STOP <[0:1 ]Stop >");
  EXPECT_FALSE(form.DeviceListCheck.ticked());
  EXPECT_EQ(names(), "\r\n") << "the server's";
  form.PropertyName.click();
  EXPECT_EQ(shown(form.ProcessCheck, form.NumStepsText), "clear, 0");
  EXPECT_FALSE(form.NumStepsText.enabled());
}

TEST_F(Editing, RowsShiftWhenOneIsRemoved) {
  openRows(3);
  remove(0);
  form.RemoveProperty.click();
  EXPECT_EQ(status().substr(0, 53), "Nothing removed: no line of the list is selected. 1 r");
  EXPECT_EQ(lines(), (Lines{"[S] P1 <d>", "[S] P2 <d>"}));

  form.PropertyList.select(1);
  type(form.PropertyName, "");
  form.PropertyList.doubleClick();
  EXPECT_EQ(lines(), Lines{"[S] P1 <d>"});
  EXPECT_EQ(form.PropertyName.text(), "P2") << "shown ahead of its removal";
  form.EditCmd.click();
  EXPECT_EQ(form.PropertyList.selectedIndex(), 1);
  type(form.PropertyDescription, "other");
  form.EditCmd.click();
  EXPECT_EQ(lines(), (Lines{"[S] P1 <d>", "[S] P2 <other>"}));
}

TEST_F(Editing, TheServersDeviceNamesStandInTheBox) {
  typeAndLeave(form.NumDevices, "3");
  EXPECT_EQ(names(), "Device 0\r\nDevice 1\r\nDevice 2\r\n");
  typeAndLeave(form.deviceNamesInputText, "A\r\nB\r\nC\r\n");
  for (const char* number : {"2", "0", "99999", "3"}) type(form.NumDevices, number);
  form.NumDevices.lostFocus();
  EXPECT_EQ(names(), "A\r\nB\r\nC\r\n") << "the box is filled but once";

  nameServer();
  type(form.PropertyName, "P");
  for (int i = 0; i < 2; ++i) toggle(form.DeviceListCheck);
  EXPECT_EQ(names(), "A\r\nB\r\nDevice 2\r\n") << "two were left for a while";
  form.EditCmd.click();
  type(form.NumDevices, "4");
  form.Command1.click();
  EXPECT_EQ(tableRows("MYSRV/devices.csv"), (Lines{" 0,A", " 1,B", " 2,Device 2", " 3,Device 3"}));
  EXPECT_EQ(tableRows("MYSRV/exports.csv"),
            Lines{"MYSRV,MYSRV,P,1,double,0,NULL, 1,READ,4,[0:100 ],0"});
}

TEST_F(Editing, TheCaretInTheBoxAndTheNumberBesideItFollowEachOther) {
  TextField& box = form.deviceNamesInputText;
  TextField& number = form.deviceNumberInputText;
  type(box, "A\r\nB\r\nC\r\n");
  for (const std::size_t place : {3U, 4U}) {
    clickAt(box, 4);
    EXPECT_EQ(number.text(), " 1");
    EXPECT_EQ(box.caret(), place) << "at first the number puts it ahead of its line";
  }
  for (const char* beyond : {"5", "40000"}) {
    type(number, beyond);
    EXPECT_EQ(box.caret(), 9) << beyond;
  }
  box.setText("D\r\n");
  EXPECT_EQ(box.caret(), 0) << "of another text";
  nameServer();
  commit("P");
  form.Command1.click();
  EXPECT_EQ(tableRows("MYSRV/devices.csv"), Lines{" 0,Device 0"}) << "the box was clicked";
}

TEST_F(Editing, APropertysDeviceListWaitsForItsCommit) {
  nameServer();
  type(form.PropertyName, "P");
  type(form.OutputDataSize, "-1");
  toggle(form.DeviceListCheck);
  EXPECT_EQ(status(), "Device List cleared: the data size must not be negative.");
  EXPECT_FALSE(form.DeviceListCheck.ticked());
  form.EditCmd.click();
  form.PropertyList.select(0);
  EXPECT_FALSE(form.DeviceListCheck.ticked());

  type(form.OutputDataSize, "2");
  type(form.deviceNumberInputText, "7");
  toggle(form.DeviceListCheck);
  EXPECT_TRUE(form.propertyOption.selected());
  EXPECT_FALSE(form.ServerOption.selected());
  EXPECT_EQ(names(), "Device 0\r\nDevice 1\r\n");
  EXPECT_EQ(form.deviceNumberInputText.text(), "0");
  typeAndLeave(form.deviceNamesInputText, "X\r\nY\r\n");
  form.EditCmd.click();
  commit("Q");
  EXPECT_FALSE(form.DeviceListCheck.ticked());
  EXPECT_EQ(names(), "\r\n") << "the server's own";
  form.PropertyList.select(0);
  EXPECT_TRUE(form.DeviceListCheck.ticked());
  EXPECT_EQ(names(), "X\r\nY\r\nDevice 2\r\n");

  form.Command1.click();
  EXPECT_EQ(tableRows("MYSRV/P-names.csv"), (Lines{" 0,X", " 1,Y", " 2,Device 2"}));
  EXPECT_FALSE(home.has("MYSRV/Q-names.csv"));
}

TEST_F(Editing, ADeviceListGivenUpReachesNoOtherProperty) {
  auto giveUpList = [&, size = 2]() mutable {
    type(form.PropertyName, "GIVEN UP");
    type(form.OutputDataSize, std::to_string(++size));
    toggle(form.DeviceListCheck);
    EXPECT_EQ(std::count(names().begin(), names().end(), '\n'), size) << "none is taken up again";
  };
  nameServer();
  giveUpList();
  type(form.ProjectDir, home.path("OTHER"));
  EXPECT_EQ(status(), "Device list prepared for GIVEN UP dropped by the change of directory.");
  form.EditCmd.click();
  EXPECT_FALSE(form.DeviceListCheck.ticked()) << "nor one in another directory";

  openRows(2);
  giveUpList();
  form.PropertyList.select(1);
  EXPECT_FALSE(form.DeviceListCheck.ticked());
  commit("A");
  EXPECT_FALSE(form.DeviceListCheck.ticked()) << "nor when it is shown by its own row";

  form.PropertyList.select(1);
  giveUpList();
  form.RemoveProperty.click();
  commit("B");
  type(form.OutputDataSize, "1");
  type(form.PropertyName, "C");
  toggle(form.DeviceListCheck);
  EXPECT_EQ(names(), "Device 0\r\n") << "nor by a list that is made again";
  form.ServerOption.select();
  EXPECT_FALSE(form.DeviceListCheck.ticked());

  openRows(1001);
  type(form.PropertyName, "NEW");
  toggle(form.DeviceListCheck);
  type(form.deviceNumberInputText, "7");
  toggle(form.DeviceListCheck);
  EXPECT_EQ(form.deviceNumberInputText.text(), "0") << "without a free row none waits";
}

TEST_F(Editing, ThresholdsAndMaskExcludeEachOther) {
  const Lines fields =
      words("almHiText almLoText almHiWarnText almLoWarnText almMaskText almNormalText");
  for (const std::string& entered : fields) {
    for (const std::string& field : fields) engineer.field(field).setText("40");
    engineer.field(entered).gotFocus();
    const bool isMask = entered == "almMaskText" || entered == "almNormalText";
    EXPECT_EQ(shown(form.almHiText, form.almLoText, form.almHiWarnText, form.almLoWarnText,
                    form.almMaskText, form.almNormalText),
              isMask ? "0, 0, 0, 0, 40, 40" : "40, 40, 40, 40, 0, 0");
    EXPECT_EQ(status(), isMask ? "The four limits are set to 0: this alarm watches a mask."
                               : "Mask and normal value are set to 0: this alarm watches limits.");
  }
}

TEST(DeviceBox, HasLinesAndCaretPositions) {
  const std::string box = "\r\nA\rB\r\n\r\nC";
  const std::vector<std::size_t> starts{0, 2, 7, 9};
  for (std::int16_t line = 0; line < 4; ++line) {
    const std::size_t start = starts[static_cast<std::size_t>(line)];
    EXPECT_EQ(findSelStartAtLine(box, line), static_cast<int>(start)) << line;
    EXPECT_EQ(findLineFromMultilineText(box, start), line) << line;
  }
  EXPECT_EQ(findLineFromMultilineText(box, 6), 1) << "within a line end";
  EXPECT_EQ(findSelStartAtLine(box, 9), 12) << "behind the last line";
  EXPECT_EQ(findSelStartAtLine("", 9), 0);
  const std::string large = std::string(40000, 'x') + "\r\n";
  EXPECT_THROW(findLineFromMultilineText(large, 40000), Failure);
  EXPECT_THROW(findSelStartAtLine(large, 1), Failure);
}

}  // namespace
}  // namespace kova::test
