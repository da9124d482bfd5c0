// SPDX-License-Identifier: MIT
// Commits and writers on values: a form and a project in, a project and notes out.
#include <array>

#include "completion/device_list_checks.h"
#include "completion/table_writer.h"
#include "support/caseless_disk.h"
#include "support/flow.h"
#include "tables/range_prefix.h"

namespace kova::test {
namespace {

struct Commit : testing::Test, Committing {
  /// The rows of the export table as they are written, from the property's name on.
  std::string rows() const {
    std::string all;
    for (std::int16_t k = 0; k < project.exportCount; ++k) {
      all += exportDataLine(rowOf(project.exportTable, k), k).substr(4);
    }
    return all;
  }
};

TEST_F(Commit, KeepsAHistoryOnceAndAnAlarmWatchAtEachTime) {
  struct Step {
    std::string exportName, localName, tolerance, boxes;
    Rows counts;
    std::string notes;
  };
  const std::vector<Step> steps = {
      {"S", "MYSRV", "1", "ha", {1, 1, 1}, ""},
      {"S", "MYSRV", "1", "ha", {1, 1, 2}, "a"},
      {"S", "MYSRV", "2", "h", {1, 1, 2}, "h"},
      {"S", "MYSRV", "1", "", {1, 1, 2}, ""},
      {"T", "MYSRV", "1", "h", {2, 2, 2}, ""},
      // Rows store six characters of a local name and are found by all.
      {"S", "MYSERVER", "1", "ha", {2, 3, 3}, ""},
      {"S", "MYSERVER", "1", "ha", {2, 4, 4}, "a"},
  };
  for (const Step& step : steps) {
    form.exportName = step.exportName;
    form.localName = step.localName;
    form.tolerance = step.tolerance;
    form.hasHistory = step.boxes.starts_with('h');
    form.hasAlarmWatch = step.boxes.ends_with('a');
    const CommitNotes notes = edit().notes;
    EXPECT_EQ(counts(), step.counts);
    EXPECT_EQ(std::string(notes.firstHistoryStays ? "h" : "") + (notes.furtherAlarmRow ? "a" : ""),
              step.notes);
    EXPECT_TRUE(project.exportTable[0].hasHistory) << "also if it is replaced without a tick";
  }
  form.localName = "MYSRV";
  project.historyTable[0].format = "float";
  EXPECT_FALSE(edit().notes.firstHistoryStays) << "other programs have a case of their own";
}

TEST_F(Commit, PutsARangeAheadOfTheDescriptionUnlessItIsZero) {
  const std::vector<std::array<std::string, 4>> cases = {{"0", "100", "V", "[0:100 V]x"},
                                                         {"-1", "0", "none", "[-1:0 ]x"},
                                                         {"x", "", "V", "x"},
                                                         {"0", "1E-60", "V", "x"},
                                                         {"0", "1E-40", "V", "[0:1E-40 V]x"}};
  for (const auto& [minimum, maximum, units, description] : cases) {
    form.minimum = minimum;
    form.maximum = maximum;
    form.units = units;
    edit();
    EXPECT_EQ(project.exportTable[0].description, description);
  }
}

TEST(Range, StandsAtTheHeadOfADescription) {
  using Parts = std::array<std::string, 5>;
  const std::vector<Parts> cases = {{"[0:100 V]Supply voltage", "0", "100", "V", "Supply voltage"},
                                    {"[-1.5:1.5 mA/cm2]x", "-1.5", "1.5", "mA/cm2", "x"},
                                    {"[0:3 ]Start ramp", "0", "3", "", "Start ramp"},
                                    {"[0:1:2 V]x[y]z", "0", "1:2", "V", "x[y]z"},
                                    {"[ b]x", "no text", "", "b", "x"},
                                    {"[0:100]x", "0", "no text", "none", "x"},
                                    {"[abc]x", "no text", "no text", "none", "x"},
                                    {"x[0:1 V]y", "0", "1", "V]", "y"},
                                    {"abc]x", "no text", "no text", "", "abc]x"},
                                    {"[ab", "no text", "no text", "", "[ab"},
                                    {"[]x", "no text", "no text", "", "[]x"},
                                    {"[a]x", "no text", "no text", "", "[a]x"},
                                    {"]x[0:1 V]", "no text", "no text", "", "]x[0:1 V]"}};
  for (const Parts& expected : cases) {
    const DescriptionParts parts = parseDescription(expected[0]);
    const Parts found = {expected[0], parts.minimum.value_or("no text"),
                         parts.maximum.value_or("no text"), parts.units, parts.rest};
    EXPECT_EQ(found, expected);
    EXPECT_EQ(parts.hasPrefix, parts.rest != expected[0]) << expected[0];
  }
}

TEST_F(Commit, KeepsSizesOfWhatHasAFormat) {
  form.inputSize = "3";
  form.outputSize = "2";
  form.arrayType = ".GIF";
  const std::vector<std::array<std::string, 3>> cases = {{"short", "NULL", "2,short.GIF,0,NULL"},
                                                         {"NULL", "float", "0,NULL.GIF,3,float"},
                                                         {"char", "long", "2,char.GIF,3,long"}};
  for (const auto& [output, input, columns] : cases) {
    form.outputFormat = output;
    form.inputFormat = input;
    edit();
    EXPECT_EQ(rows(), "P," + columns + ", 1,READ,1,[0:100 ]x,0\r\n");
  }
}

TEST_F(Commit, OfAProcessIsFiveRowsWhereAllHaveRoomAndNoneIsThere) {
  form.propertyName = "RAMP";
  form.description = "ramp";
  form.numSteps = "03";
  form.isProcess = true;
  EXPECT_EQ(edit().added, 5);
  EXPECT_EQ(
      rows(),
      "RAMP.START,1,short,1,short, 1,READ|WRITE,1,[0:03 ]Start ramp,3\r\nRAMP.STOP,0,NULL,0,NULL, "
      "2,WRITE,1,[0:03 ]Stop ramp,3\r\nRAMP.PAUSE,0,NULL,0,NULL, 3,WRITE,1,[0:03 ]Pause "
      "ramp,3\r\nRAMP.RESUME,0,NULL,0,NULL, 4,WRITE,1,[0:03 ]Resume "
      "ramp,3\r\nRAMP.STATUS,1,short,0,NULL, 5,READ,1,[0:03 ]Status of ramp,3\r\n");
  for (const std::string taken : {"RAMP.START", "RAMP.STATUS", "RAMP"}) {
    project.exportTable[0].propertyName = taken;
    project.exportCount = 1;
    EXPECT_EQ(edit().refusal, "Please Remove Process Property RAMP first") << taken;
  }
  form.propertyName = "OTHER";
  for (const std::int16_t count : std::array<std::int16_t, 2>{997, 996}) {
    project.exportTable.resize(1001);
    project.exportCount = count;
    EXPECT_EQ(edit().refusal, count == 997 ? "The property table is full" : "");
  }
  EXPECT_EQ(project.exportCount, 1001);
}

TEST_F(Commit, TurnsAwayWhatHasNoNameOrNoRoom) {
  const std::vector<std::pair<FormText, std::string>> names = {
      {&FormTexts::propertyName, "Property"},
      {&FormTexts::localName, "Local"},
      {&FormTexts::exportName, "Export"}};
  for (const auto& [text, name] : names) {  // one after the other is cleared
    form.*text = "";
    const CommitResult refused = edit();
    EXPECT_EQ(refused.refusal, "Not a valid " + name + " Name");
    EXPECT_EQ(refused.field, text);
  }
  EXPECT_EQ(counts(), Rows{});

  form.exportName = form.localName = "S";
  form.propertyName = "P";
  form.hasHistory = form.hasAlarmWatch = true;
  project.exportTable.resize(1001);
  project.historyTable.resize(1000);
  project.alarmTable.resize(1000);
  project.exportCount = 1001;
  project.historyCount = project.alarmCount = 1000;
  EXPECT_EQ(edit().refusal, "The property table is full");
  project.exportTable[7].exportName = "S";
  project.exportTable[7].propertyName = "P";
  EXPECT_EQ(edit().refusal, "");
  EXPECT_EQ(counts(), (Rows{1001, 1000, 1000}));
  EXPECT_EQ(commit(form, project, CommitMode::addOnly).refusal, "Property P already assigned");
}

TEST_F(Commit, GivesADeviceListAFileThatTheDiskCanKeep) {
  CaselessDisk disk(*files);
  const auto unwritable = [&] {
    const auto file = findUnwritableNamesFile(disk, project, files->path(home.path()));
    return file ? file->name + " : " + file->why : "none";
  };
  const std::string longName(240, 'x');
  for (const std::string& name : {std::string("P\xE9"), std::string("P\xC9"), longName}) {
    form.propertyName = name;
    edit();
  }
  EXPECT_EQ(unwritable(), "none") << "without a list there is no file";
  for (const std::size_t row : {0U, 1U}) project.exportTable[row].hasDeviceList = true;
  EXPECT_EQ(unwritable(), "P\xC9-names.csv : the disk can't distinguish it from P\xE9-names.csv");
  project.exportTable[1].hasDeviceList = false;
  project.exportTable[2].hasDeviceList = true;
  EXPECT_EQ(unwritable(),
            longName + "-names.csv : the disk can't hold a file of this name and its backup");
}

TEST_F(Commit, KnowsATableThatADiskListsInAnotherCase) {
  home.write("P/field-names.csv", "as it was read");
  CaselessDisk disk(*files);
  const Path folder = files->path(home.path("P"));
  ProjectOnDisk known;
  known.states.emplace("field-names.csv", *disk.state(folder / "field-names.csv"));
  const FakeClock clock;
  for (const char* content : {"as Done writes it", "as the next one does"}) {
    TableWriter(disk, clock, folder, known).replace(folder / "FIELD-names.csv", content);
    EXPECT_TRUE(known.externalChanges.empty()) << "nobody else has written it";
    EXPECT_EQ(disk.plainFiles(folder).size(), 1U);
  }
  replace(disk, folder / "Field-names.csv", "by a colleague");
  TableWriter(disk, clock, folder, known).replace(folder / "FIELD-names.csv", "replaced");
  EXPECT_EQ(known.externalChanges.size(), 1U);
}

}  // namespace
}  // namespace kova::test
