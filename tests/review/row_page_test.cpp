// SPDX-License-Identifier: MIT
// Rows that no control reaches: what is listed, and what becomes of them here, in the form, on
// disk.
#include "review/row_page.h"

#include "review/change_page.h"
#include "review/preview.h"
#include "support/flow.h"

namespace kova::test {
namespace {

struct RowPage : Flow {
  RowPage() {
    home.write("MAGNET/almwatch.csv", home.read("MAGNET/almwatch.csv") +
                                          "MAGEQM,#0,GONE, 1,LONG, 5, 7, 0, 0, 0, 0,0,0\r\n");
  }
  void SetUp() override {
    Flow::SetUp();
    open("MAGNET");
    form.PropertyList.select(7);
  }
  /// "history.csv: FIELD, CURRENT"; "!" marks a row without a property.
  std::string listed() const {
    std::string text;
    for (const ReviewGroup& group : reviewRows(wizard).groups) {
      text += group.name + ':';
      for (const ReviewLine& line : group.lines) {
        text += ' ' + line.texts[0] + (line.texts[2].empty() ? "" : "!");
      }
      text += ' ';
    }
    return text;
  }
  std::string written(const std::string& file) const {
    const Preview done = preview(wizard);
    for (const auto& [path, content] : done.files) {
      if (path.native.ends_with(file)) return content;
    }
    return "not written";
  }

  const CodePage page = CodePage::windows1252();
  Wizard& wizard = engineer.program.wizard;
};

TEST_F(RowPage, DeletedRowsAreGoneFromTheFormAndFromWhatDoneWrites) {
  EXPECT_EQ(listed(), "history.csv: FIELD CURRENT almwatch.csv: GONE! STATE CURRENT ");
  EXPECT_TRUE(deleteChosen(wizard, *chosenRow(wizard, "almwatch.csv", "2")));
  EXPECT_EQ(shown(form.HistoryCheck, form.AlarmWatchCheck), "ticked, ticked")
      << "the row in the table's third place is GONE's";
  EXPECT_TRUE(deleteChosen(wizard, *chosenRow(wizard, "almwatch.csv", "1")));
  EXPECT_EQ(shown(form.HistoryCheck, form.AlarmWatchCheck), "ticked, clear");
  EXPECT_TRUE(deleteChosen(wizard, *chosenRow(wizard, "history.csv", "1")));
  EXPECT_EQ(shown(form.HistoryCheck, form.AlarmWatchCheck), "clear, clear");
  EXPECT_EQ(listed(), "history.csv: FIELD almwatch.csv: STATE ");
  EXPECT_EQ(wizard.state.project.alarmTable[1], AlarmWatchRecord()) << "no row waits to be read";
  EXPECT_FALSE(chosenRow(wizard, "history.csv", "1"));
  EXPECT_NE(status().find("3 removals not yet written"), std::string::npos) << status();
  EXPECT_EQ(form.PropertyList.selectedIndex(), 7) << "no line was selected";
  const std::string alarms = written("almwatch.csv");
  EXPECT_EQ(alarms.find("CURRENT"), std::string::npos);
  EXPECT_EQ(alarms.find("GONE"), std::string::npos);
}

TEST_F(RowPage, TheLastAlarmWatchRowIsDeletedOnDiskAsDoneWouldLeaveIt) {
  deleteRow(wizard, RowTable::alarms, 2);
  deleteRow(wizard, RowTable::alarms, 1);
  const ChosenRow last{RowTable::alarms, 0};
  engineer.answers = {Answer::no};
  EXPECT_FALSE(deleteChosen(wizard, last));
  EXPECT_EQ(said().substr(0, 20), "Delete the last row?");
  EXPECT_EQ(engineer.rows().alarms, 1);
  const std::string before = home.read("MAGNET/almwatch.csv");
  engineer.answers = {Answer::yes};
  engineer.clock.now = 1700000009;
  EXPECT_TRUE(deleteChosen(wizard, last));
  said();
  EXPECT_EQ(engineer.rows().alarms, 0);
  EXPECT_TRUE(tableRows("MAGNET/almwatch.csv").empty());
  EXPECT_EQ(home.read("MAGNET/almwatch-1700000009.csv"), before);
  EXPECT_EQ(written("almwatch.csv"), "not written");
}

TEST_F(RowPage, ARowTakesTheFormsSettingsAndKeepsItsNames) {
  type(form.PollRateText, "250");
  type(form.almHiText, "7.5");
  EXPECT_TRUE(mayTakeFormSettings(wizard, {RowTable::history, 1}));
  EXPECT_FALSE(mayTakeFormSettings(wizard, {RowTable::history, 0})) << "it is FIELD's";
  takeSettings(wizard, {RowTable::history, 1});
  takeSettings(wizard, {RowTable::alarms, 1});
  EXPECT_NE(written("history.csv").find(" 2,MAGNET,MAGEQM,CURRENT,#0, 4,FLOAT.CHANNEL, 18000, 250"),
            std::string::npos);
  EXPECT_NE(written("almwatch.csv").find("MAGEQM,#0,CURRENT, 4,FLOAT.CHANNEL, 10, 7, 7.5"),
            std::string::npos);
  const std::string history = written("history.csv");
  type(form.PollRateText, "1E30");
  takeSettings(wizard, {RowTable::history, 1});
  EXPECT_EQ(said(), "Could not change the row : Polling Rate (msec) is not a valid number");
  EXPECT_EQ(written("history.csv"), history);

  type(form.PropertyName, "NEW");
  EXPECT_TRUE(
      reviewRows(wizard).heading.ends_with("adds a history row for the property in the form."));
  project("L", {"L,LONGNAME,P,1,short,0,NULL,1,READ,1,x,0"});
  home.write("L/almwatch.csv", headerLine<AlarmWatchRecord>() + "LONGNA,#0,P\r\n");
  open("L");
  EXPECT_EQ(said(), truncated + "LONGNA");
  EXPECT_EQ(listed(), "almwatch.csv: P ") << "six characters of a local name are stored";
}

TEST_F(RowPage, ARenamedPropertyTakesItsRowsAlong) {
  renameChosenProperty(wizard, "CURRENT", "AMPERES");
  EXPECT_EQ(listed(), "history.csv: FIELD AMPERES almwatch.csv: GONE! STATE AMPERES ");
  EXPECT_EQ(lines()[7], "[MAGNET] AMPERES <[0:250 A]Current of each supply>");
  EXPECT_EQ(form.PropertyName.text(), "AMPERES");
  EXPECT_EQ(shown(form.HistoryCheck, form.AlarmWatchCheck), "ticked, ticked");
  for (const char* name : {"", "FIELD"}) {
    renameChosenProperty(wizard, "AMPERES", name);
    EXPECT_EQ(said().substr(0, 26), "Could not rename AMPERES :") << name;
  }
  renumberHistory(wizard);
  EXPECT_EQ(written("history.csv").find(" 0,"), std::string::npos);
}

TEST_F(RowPage, WhatIsPutBackAndLeftOutIsWhatTheDiskHolds) {
  const Lines listedBefore = lines();
  const auto tables = [this] {
    std::string all = written("exports.csv") + written("history.csv") + written("almwatch.csv") +
                      written("FIELD-names.csv");
    std::erase(all, ' ');  // a selection has put one before a number
    return all;
  };
  form.PropertyList.select(6);
  const std::string before = tables();
  remove(5);
  remove(0);
  form.PropertyList.select(4);
  type(form.PropertyDescription, "edited");
  form.EditCmd.click();
  type(form.PropertyName, "NEW");
  form.HistoryCheck.setValue(1);
  form.AlarmWatchCheck.setValue(1);
  form.AddProperty.click();
  said();
  deleteRow(wizard, RowTable::history, 0);
  form.HistoryCheck.setValue(0);
  type(form.PropertyName, "STATE");
  takeFormSettings(wizard, RowTable::alarms, 0);
  form.PropertyList.select(5);  // it has a history, or Done would add one

  std::string done;
  const auto actOnFirst = [&] {
    for (const ReviewGroup& group : reviewDone(wizard, page).writing.groups) {
      for (const ReviewLine& line : group.lines) {
        const bool isHeld = mayPutBack(wizard, group.key, line);
        if (!isHeld && !mayLeaveOut(wizard, group.key, line)) continue;
        (isHeld ? putBackChosen : leaveOutChosen)(wizard, group.key, line);
        done += line.sign;
        return true;
      }
    }
    return false;
  };
  while (done.size() < 20 && actOnFirst()) continue;
  EXPECT_EQ(done, "~+--~+-+");
  EXPECT_EQ(lines(), listedBefore);
  EXPECT_EQ(form.PropertyList.selectedIndex(), 7) << "the line that was selected";
  EXPECT_EQ(tables(), before);
  type(form.PropertyName, "NEW");
  EXPECT_FALSE(actOnFirst()) << "a row that only Done adds is not left out";
}

TEST_F(RowPage, ARowIsPutBackByItsNamesWhereTheFileHasFurtherRows) {
  std::string table = example["exports.csv"];
  const auto end = table.find("\r\n") + 2;
  home.write("MAGNET/exports.csv", table.insert(end, "MAGNET,MAGEQM,OF A COLLEAGUE\r\n"));
  remove(5);
  remove(3);
  type(form.NumDevices, "9");
  const ReviewLine state{.key = "MAGNET STATE", .before = 7};
  EXPECT_TRUE(mayPutBack(wizard, "exports.csv", state));
  putBackChosen(wizard, "exports.csv", state);
  EXPECT_EQ(lines()[4], "[MAGNET] STATE <State word of each supply>");
  EXPECT_EQ(wizard.state.project.exportTable[4].numModules, "9") << "as many as its server has";
}

}  // namespace
}  // namespace kova::test
