// SPDX-License-Identifier: MIT
// The property form: commit, add and remove, processes, device lists, the alarm panel.
#include <algorithm>
#include <array>

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
  void remove(int line) {
    form.PropertyList.select(line);
    form.RemoveProperty.click();
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

TEST_F(Editing, ACommitTakesWhatTheFormAndItsPanelsHold) {
  open("MYSRV");
  type(form.LocalName, "MYSERVER");
  EXPECT_EQ(said(), truncated + "MYSERV");
  int value = 0;
  for (TextField* field :
       {&form.historyDeviceText, &form.ArchiveRateText, &form.PollRateText,
        &form.ArchiveHeartbeatText, &form.ShortDepthText, &form.LongDepthText, &form.toleranceText,
        &form.almwDeviceText, &form.AlmSystemText, &form.almSeverityText, &form.almCountThreshText,
        &form.almHiText, &form.almLoText, &form.almHiWarnText, &form.almLoWarnText,
        &form.almMaskText, &form.almNormalText}) {
    field->setText(std::to_string(++value));
  }
  type(form.PropertyDescription, "d");
  type(form.MaxValue, "0");
  form.InputDataFormat.setText("Long");
  type(form.InputDataSize, "2");
  type(form.OutputDataSize, "20");
  form.ArrayTypeCombo.setText("CHANNEL");
  for (const char* format : {"Single", "Integer", "NAME8"}) {
    type(form.PropertyName, format);
    form.OutputDataFormat.setText(format);
    toggle(form.HistoryCheck);
    toggle(form.AlarmWatchCheck);
    form.EditCmd.click();
  }
  type(form.PropertyName, "Single");
  EXPECT_EQ(shown(form.HistoryCheck, form.AlarmWatchCheck), "ticked, ticked");

  form.AccessMode.setText("WRITE");
  form.OutputDataFormat.setText("NULL");
  form.InputDataFormat.setText("NULL");
  EXPECT_EQ(form.InputDataSize.text(), "0");
  type(form.InputDataSize, "3");
  commit("NONE");

  form.Command1.click();

  EXPECT_EQ(tableRows("MYSRV/exports.csv"),
            (Lines{"MYSRV,MYSERV,Single,20,float.CHANNEL,2,long, 1,READ,1,d,0",
                   "MYSRV,MYSERV,Integer,20,short.CHANNEL,2,long, 2,READ, 1,d,0",
                   "MYSRV,MYSERV,NAME8,20,NAME8.CHANNEL,2,long, 3,READ, 1,d,0",
                   "MYSRV,MYSERV,NONE,0,NULL.CHANNEL,0,NULL, 4,WRITE, 1,d,0"}));
  EXPECT_EQ(tableRows("MYSRV/history.csv"),
            (Lines{" 1,MYSRV,MYSERV,Single,1, 20,FLOAT.CHANNEL, 4, 3, 2,7, 5, 6",
                   " 2,MYSRV,MYSERV,Integer,1, 20,LONG.CHANNEL, 4, 3, 2,7, 5, 6",
                   " 3,MYSRV,MYSERV,NAME8,1, 20,NAME8.CHANNEL, 4, 3, 2,7, 5, 6",
                   " 4,MYSRV,MYSERV,NONE,1, 0,NULL, 4, 3, 2,7, 5, 6"}))
      << "the last one for what stands in the form";
  EXPECT_EQ(tableRows("MYSRV/almwatch.csv"),
            (Lines{"MYSERV,8,Single, 20,FLOAT.CHANNEL, 10, 9, 12, 13, 14, 15,16,17",
                   "MYSERV,8,Integer, 20,LONG.CHANNEL, 10, 9, 12, 13, 14, 15,16,17",
                   "MYSERV,8,NAME8, 20,NAME8.CHANNEL, 10, 9, 12, 13, 14, 15,16,17"}));
  EXPECT_EQ(home.files("MYSRV").size(), 3);
}

TEST_F(Editing, ARangeStandsAheadOfTheDescriptionUnlessItIsZero) {
  const std::vector<std::array<std::string, 4>> cases = {{"0", "100", "V", "[0:100 V]d"},
                                                         {"-1", "0", "none", "[-1:0 ]d"},
                                                         {"x", "", "V", "d"},
                                                         {"0", "1E-60", "V", "d"},
                                                         {"0", "1E-40", "V", "[0:1E-40 V]d"}};
  nameServer();
  type(form.PropertyDescription, "d");
  for (const auto& [minimum, maximum, units, description] : cases) {
    type(form.MinValue, minimum);
    type(form.MaxValue, maximum);
    type(form.Units, units);
    commit("P");
    EXPECT_EQ(engineer.program.wizard.state.project.exportTable[0].description, description);
  }
}

TEST_F(Editing, NamesAreCheckedInOrderAndChangeNothing) {
  const TextField* entered = nullptr;
  const std::vector<std::pair<TextField*, std::string>> fields = {
      {&form.ExportName, "Export"}, {&form.LocalName, "Local"}, {&form.PropertyName, "Property"}};
  for (const auto& [field, name] : fields) {
    field->takeFocus = [&entered, to = field] { entered = to; };
    form.EditCmd.click();
    EXPECT_EQ(said(), "Not a valid " + name + " Name");
    EXPECT_EQ(entered, field);
    EXPECT_EQ(engineer.rows(), Rows{});
    type(*field, "M6");
  }
}

TEST_F(Editing, HistoryIsKeptOnceAndAnAlarmWatchAtEachCommit) {
  nameServer();
  type(form.PropertyName, "P");
  toggle(form.HistoryCheck);
  toggle(form.AlarmWatchCheck);
  for (int i = 0; i < 3; ++i) form.EditCmd.click();
  EXPECT_EQ(engineer.rows(), (Rows{.properties = 1, .history = 1, .alarms = 3}));

  type(form.LocalName, "MYSERVER");
  EXPECT_EQ(said(), truncated + "MYSERV");
  for (int i = 0; i < 2; ++i) form.EditCmd.click();
  EXPECT_EQ(engineer.rows(), (Rows{.properties = 1, .history = 3, .alarms = 5}))
      << "rows store six characters of a local name and are found by all";

  for (const char* name : {"Q", "P"}) {
    type(form.PropertyName, name);
    EXPECT_EQ(shown(form.HistoryCheck, form.AlarmWatchCheck), "clear, clear") << name;
    EXPECT_FALSE(form.HistoryPanel.enabled());
  }
}

TEST_F(Editing, AValueThatDoesNotFitIsNamedAndChangesNothing) {
  nameServer();
  type(form.PropertyName, "P");
  toggle(form.AlarmWatchCheck);
  toggle(form.HistoryCheck);
  const auto refuses = [&](const std::string& value, TextField& field, const std::string& text) {
    const std::string before = field.text();
    bool selected = false;
    field.selectAll = [&] { selected = true; };
    type(field, text);
    form.EditCmd.click();
    EXPECT_EQ(selected, !field.onGotFocus) << value;
    field.selectAll = {};
    EXPECT_EQ(said(), "Could not add P : " + value + " is not a valid number");
    EXPECT_EQ(engineer.rows(), Rows{});
    type(field, before);
  };
  refuses("Severity (high)", form.almSeverityText, "high");
  refuses("Polling Rate (msec)", form.PollRateText, "99999999999");
  refuses("Value too high", form.almHiText, "1E39");
  toggle(form.ProcessCheck);
  refuses("Number Steps :", form.NumStepsText, "1E999");
  toggle(form.ProcessCheck);

  project("S", {});
  home.write("S/history.csv", "Index\r\n32767\r\n");
  open("S");
  form.EditCmd.click();
  EXPECT_EQ(said(), "Could not add P : the history table has no free index");
}

TEST_F(Editing, AProcessIsFiveRows) {
  nameServer();
  type(form.PropertyName, "RAMP");
  type(form.PropertyDescription, "ramp");
  toggle(form.ProcessCheck);
  EXPECT_TRUE(form.NumStepsText.enabled());
  std::string selected;
  form.NumStepsText.selectAll = [&] { selected = form.NumStepsText.text(); };
  type(form.NumStepsText, "");
  EXPECT_EQ(form.NumStepsText.text(), "1");
  EXPECT_EQ(selected, "1");
  type(form.NumStepsText, "03");
  toggle(form.DeviceListCheck);

  form.EditCmd.click();
  EXPECT_FALSE(form.DeviceListCheck.ticked());
  form.EditCmd.click();
  EXPECT_EQ(said(), "Please Remove Process Property RAMP.START first");
  commit("RAMP");
  EXPECT_EQ(said(), "Please Remove Process Property RAMP first");
  form.PropertyName.click();
  EXPECT_EQ(shown(form.ProcessCheck, form.NumStepsText), "clear, 0");
  EXPECT_FALSE(form.NumStepsText.enabled());
  form.PropertyList.select(4);
  form.EditCmd.click();
  form.Command1.click();
  EXPECT_EQ(tableRows("MYSRV/exports.csv"),
            (Lines{"MYSRV,MYSRV,RAMP.START,1,short,1,short, 1,READ|WRITE,1,[0:03 ]Start ramp,3",
                   "MYSRV,MYSRV,RAMP.STOP,0,NULL,0,NULL, 2,WRITE,1,[0:03 ]Stop ramp,3",
                   "MYSRV,MYSRV,RAMP.PAUSE,0,NULL,0,NULL, 3,WRITE,1,[0:03 ]Pause ramp,3",
                   "MYSRV,MYSRV,RAMP.RESUME,0,NULL,0,NULL, 4,WRITE,1,[0:03 ]Resume ramp,3",
                   "MYSRV,MYSRV,RAMP.STATUS,1,short,0,NULL, 5,READ,1,[0:03 ]Status of ramp,0"}))
      << "the last one was edited as a property of its own";
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

TEST_F(Editing, FullTablesTurnRowsAway) {
  std::string history = "Index\r\n";
  for (int i = 0; i < 1000; ++i) history += "1\r\n";
  home.write("S/history.csv", history);
  openRows(1003);
  EXPECT_EQ(engineer.rows(), (Rows{.properties = 1001, .history = 1000}));
  toggle(form.HistoryCheck);
  form.EditCmd.click();
  form.PropertyList.select(1000);
  EXPECT_TRUE(form.HistoryCheck.ticked());
  EXPECT_EQ(engineer.rows().history, 1000);

  type(form.PropertyName, "NEW");
  toggle(form.DeviceListCheck);
  form.EditCmd.click();
  EXPECT_EQ(said(), "The property table is full");
  type(form.deviceNumberInputText, "7");
  toggle(form.DeviceListCheck);
  EXPECT_EQ(form.deviceNumberInputText.text(), "0") << "the server's list is back";

  for (int line = 1000; line > 996; --line) remove(line);
  toggle(form.ProcessCheck);
  commit("RAMP");
  EXPECT_EQ(said(), "The property table is full");
  remove(996);
  commit("RAMP");
  EXPECT_EQ(engineer.rows().properties, 1001);
}

TEST_F(Editing, TheServersDeviceNamesStandInTheBox) {
  type(form.NumDevices, "3");
  form.NumDevices.lostFocus();
  EXPECT_EQ(names(), "Device 0\r\nDevice 1\r\nDevice 2\r\n");
  type(form.deviceNamesInputText, "A\r\nB\r\nC\r\n");
  form.deviceNamesInputText.lostFocus();
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
  type(form.deviceNamesInputText, "X\r\nY\r\n");
  form.deviceNamesInputText.lostFocus();
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
  EXPECT_EQ(names(), "Device 0\r\n") << "nor by a list that is made anew";
  form.ServerOption.select();
  EXPECT_FALSE(form.DeviceListCheck.ticked());
}

TEST_F(Editing, ThresholdsAndMaskExcludeEachOther) {
  const std::array<TextField*, 6> fields{&form.almHiText,     &form.almLoText,
                                         &form.almHiWarnText, &form.almLoWarnText,
                                         &form.almMaskText,   &form.almNormalText};
  for (std::size_t entered = 0; entered < fields.size(); ++entered) {
    for (TextField* field : fields) field->setText("40");
    fields.at(entered)->gotFocus();
    EXPECT_EQ(shown(form.almHiText, form.almLoText, form.almHiWarnText, form.almLoWarnText,
                    form.almMaskText, form.almNormalText),
              entered < 4 ? "40, 40, 40, 40, 0, 0" : "0, 0, 0, 0, 40, 40");
    EXPECT_EQ(status(), entered < 4
                            ? "Mask and normal value are set to 0: this alarm watches limits."
                            : "The four limits are set to 0: this alarm watches a mask.");
  }
}

}  // namespace
}  // namespace kova::test
