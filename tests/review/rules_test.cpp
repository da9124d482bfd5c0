// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "review/findings.h"
#include "review/overlay_files.h"
#include "review/review_pages.h"
#include "support/caseless_disk.h"
#include "support/engineer.h"

namespace kova {
namespace {

using Ids = std::set<std::string_view>;

/// The example project, of which a file can be changed.
struct ExampleProject {
  ExampleProject() { std::filesystem::copy(KOVA_EXAMPLE, folder.path("MAGNET")); }

  /// Puts `text` in the place that the example tells.
  void change(const Example& example, std::string_view text) const {
    const std::string file = "MAGNET/" + std::string(example.file);
    // Names of devices are written to one file and read from another.
    if (example.file == "devices.csv") std::filesystem::remove(folder.path(devices));
    if (example.instead.empty() && text.empty()) return;
    std::string content = example.instead.empty() ? std::string(text) : folder.read(file);
    const auto at = content.find(example.instead);
    ASSERT_LT(at, content.size()) << file << " holds no " << example.instead;
    if (!example.instead.empty()) content.replace(at, example.instead.size(), text);
    folder.write(file, content);
  }

  std::vector<Finding> findings() const {
    return findFindings(readProject(*files, folder.path("MAGNET"), page));
  }
  Ids ids() const {
    Ids found;
    for (const Finding& finding : findings()) found.insert(finding.rule->id);
    return found;
  }

  static constexpr const char* devices = "MAGNET/MAGEQM-devices.csv";
  test::TemporaryFolder folder;
  CodePage page = CodePage::windows1252();
  std::unique_ptr<FileSystem> files = realFileSystem(page);
};

TEST(Rules, FireOnTheirExampleAndNotOnWhatComesClose) {
  Ids known;
  for (const Rule& rule : rules()) {
    EXPECT_TRUE(known.insert(rule.id).second) << rule.id;
    if (rule.example.file.empty()) continue;
    const ExampleProject broken;
    broken.change(rule.example, rule.example.broken);
    EXPECT_TRUE(broken.ids().contains(rule.id)) << rule.id;
    const ExampleProject kept;
    kept.change(rule.example, rule.example.kept);
    EXPECT_EQ(kept.ids(), Ids()) << rule.id;
  }
  EXPECT_GE(known.size(), 25U);
}

/// A disk that does not let one file be read.
struct ClosedFile : OverlayFiles {
  using OverlayFiles::OverlayFiles;
  std::string read(const Path& file) const override {
    if (file.leaf() == "history.csv") throw Failure("Permission denied");
    return OverlayFiles::read(file);
  }
};

TEST(Rules, SeeTablesThatAreTooLongOrThatCanNotBeRead) {
  const ExampleProject project;
  std::string watch = project.folder.read("MAGNET/almwatch.csv");
  const std::string row = watch.substr(watch.find("\r\n") + 2);
  for (int rows = 2; rows <= 1001; rows += 2) watch += row;
  const ExampleProject tooLong;
  tooLong.change({"almwatch.csv", "", "", ""}, watch);
  EXPECT_TRUE(tooLong.ids().contains("table-full"));
  tooLong.change({"almwatch.csv", "", "", ""}, watch.substr(0, watch.size() - row.size()));
  EXPECT_FALSE(tooLong.ids().contains("table-full"));

  const ClosedFile closed(*project.files);
  const auto findings =
      findFindings(readProject(closed, project.folder.path("MAGNET"), project.page));
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_EQ(findings.front().rule->id, "unreadable-file");
  EXPECT_EQ(findings.front().message, "can't be read: Permission denied");
}

TEST(Rules, TellPlaceAndReason) {
  const std::vector<std::pair<Example, std::string>> cases = {
      {{"history.csv", " 2,MAGNET", " 32768,MAGNET", ""},
       "history.csv:3:1 reading stops here: 32768 is outside -32768 to 32767; 1 line is not "
       "read"},
      {{"almwatch.csv", "MAGEQM,#0,STATE", ";\r\nMAGEQM,#0, STATES", ""},
       "almwatch.csv:2:1 comment line"},
      {{"exports.csv", "[0:250 A]", "[0;250 A]", ""},
       "exports.csv:9:64 the range in \"[0;250 A]Current of each supply\" can't be parsed"},
      {{"exports.csv", "4,float, 8", "4,17, 8", ""},
       "exports.csv:9:41 number 17 in column INFORMAT"},
      {{"history.csv", "#0, 4,FLOAT.CHANNEL, 18000", "#0, 4,LONG, 18000", ""},
       "history.csv:3:32 CURRENT has format LONG, but the property's float.CHANNEL requires "
       "FLOAT.CHANNEL"},
      {{"almwatch.csv", "4,LONG.CHANNEL", "4,FLOAT", ""},
       "almwatch.csv:2:20 STATE has format FLOAT, but the property's short.CHANNEL requires "
       "LONG.CHANNEL"},
      {{"almwatch.csv", "#0,STATE", "#0,STATES", ""},
       "almwatch.csv:2:11 no property STATES of MAGEQM"},
  };
  for (const auto& [example, reported] : cases) {
    const ExampleProject project;
    project.change(example, example.broken);
    std::set<std::string> all;
    for (const Finding& one : project.findings()) {
      all.insert(one.file + ':' + std::to_string(one.line) + ':' + std::to_string(one.column) +
                 ' ' + one.message);
    }
    EXPECT_TRUE(all.contains(reported)) << reported;
  }
}

TEST(Rules, FindNothingInWhatComesClose) {
  const std::vector<std::pair<Example, Ids>> cases = {
      {{"exports.csv", "MAGNET,MAGEQM,STATE",
        "MAGNET,MAGEQM,X.START,0,NULL,0,NULL, 6,WRITE,4,x,0\r\nMAGNET,MAGEQM,STATE", ""},
       {}},
      {{"almwatch.csv", "MAGEQM,#0,STATE", "\r\nMAGEQM,#0,STATE", ""}, {"nameless-alarm"}},
      {{"devices.csv", "", "DEVICE_NUMBER,DEVICE_NAME\r\n 0,DEVICE 0\r\n", ""}, {}},
      {{"notes-170000000.txt", "", "x", ""}, {}},
      // A fault of the table of properties does not speak of rows that belong to unread ones.
      {{"exports.csv", "LOCAL_NAME,PROPERTY,", "LOCAL_NAME,PROPERTI,", ""},
       {"missing-column", "unknown-column"}},
      {{"exports.csv", "NULL, 2,WRITE,4,", "NULL, 2,WRITE,4x,", ""}, {"reading-stops"}}};
  for (const auto& [example, ids] : cases) {
    const ExampleProject project;
    project.change(example, example.broken);
    EXPECT_EQ(project.ids(), ids) << example.broken;
  }
}

TEST(Rules, ReadTablesThatADiskListsInAnotherCase) {
  const ExampleProject project;
  const std::filesystem::path folder = project.folder.path("MAGNET");
  for (const std::string name : {"exports", "history", "FIELD-names"}) {
    std::filesystem::rename(folder / (name + ".csv"), folder / (name + ".CSV"));
  }
  project.folder.write("MAGNET/almwatch.csv", "nothing");
  const test::CaselessDisk disk(*project.files);
  const ProjectReading read = readProject(disk, folder.string(), project.page);
  EXPECT_EQ(read.properties.rows.size(), 8U);
  EXPECT_EQ(read.history.rows.size(), 2U);
  EXPECT_EQ(read.properties.rows[6].devices.size(), 5U);
  for (const Finding& found : findFindings(read)) EXPECT_EQ(found.file, "almwatch.csv");
}

TEST(Rules, ListErrorsFirstAndCountWhatGoesOn) {
  for (const std::size_t rows : {21U, 990U}) {
    const ExampleProject project;
    std::string history = project.folder.read("MAGNET/history.csv");
    for (std::size_t row = 0; row < rows; ++row) history += "\r\n";
    project.change({"history.csv", "", "", ""}, history + " 40000,MAGNET\r\n");
    std::vector<Finding> found = project.findings();
    EXPECT_EQ(found.front().rule->id, "reading-stops") << rows;
    std::erase_if(found, [](const Finding& one) { return one.rule->id != "empty-line"; });
    ASSERT_EQ(found.size(), 21U) << rows;
    EXPECT_EQ(found.back().line, 24U) << rows;
    EXPECT_EQ(found.back().message, rows == 21 ? "empty line" : "and 970 more");
  }
}

TEST(Rules, LeadToThePropertyOfTheirRow) {
  const ExampleProject project;
  project.change({"almwatch.csv", "", "", ""},
                 "LocalName,DeviceName,property\r\nMAGEQM,#0,STATES\r\n");
  test::Engineer engineer(project.folder.path());
  engineer.start();
  test::type(engineer.program.wizard.form.ExportName, "MAGNET");
  const auto groups = reviewDone(engineer.program.wizard, project.page).findings.groups;
  ASSERT_EQ(groups.size(), 1U);
  EXPECT_EQ(groups.front().lines.front().property, "STATES");
}

}  // namespace
}  // namespace kova
