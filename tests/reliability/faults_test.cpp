// SPDX-License-Identifier: MIT
// A whole run of the wizard, once for each call that it makes of its files, with that call failing.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <regex>
#include <sstream>

#include "support/engineer.h"

namespace kova::test {
namespace {

using Contents = std::map<std::string, std::string>;

const std::string reason = "the disk gives up";

/// Counts calls from 1 over all kinds and lets one of them fail, or all from there on.
struct Plan {
  int failing = 0;
  bool onwards = false;
  int calls = 0;
  std::string struck = {};
  Contents kinds = {};

  bool strikes(const std::string& kind) {
    kinds[kind] += '.';
    ++calls;
    if (failing == 0 || calls < failing || (calls > failing && !onwards)) return false;
    if (struck.empty()) struck = kind;
    return true;
  }
  void pass(const std::string& kind) {
    if (strikes(kind)) throw Failure(reason);
  }
};

struct FailingOutput : OutputFile {
  FailingOutput(std::unique_ptr<OutputFile> file, Plan& ofRun)
      : real(std::move(file)), plan(ofRun) {}
  void write(std::string_view content) override {
    if (!plan.strikes("write")) return real->write(content);
    real->write(content.substr(0, content.size() / 2));
    throw Failure(reason);
  }
  void close() override { plan.pass("close"), real->close(); }
  std::unique_ptr<OutputFile> real;
  Plan& plan;
};

struct FailingFiles : FileSystem {
  explicit FailingFiles(Plan& ofRun) : plan(ofRun) {}
  Path path(std::string_view text) const override { return real->path(text); }
  bool fileExists(const Path& file) const override {
    return !plan.strikes("look") && real->fileExists(file);
  }
  bool folderExists(const Path& folder) const override {
    return !plan.strikes("look") && real->folderExists(folder);
  }
  std::string read(const Path& file) const override { return plan.pass("read"), real->read(file); }
  std::unique_ptr<OutputFile> create(const Path& file) override {
    plan.pass("create");
    return std::make_unique<FailingOutput>(real->create(file), plan);
  }
  void createFolder(const Path& f) override { plan.pass("create folder"), real->createFolder(f); }
  void copy(const Path& from, const Path& to) override { plan.pass("copy"), real->copy(from, to); }
  void remove(const Path& file) override { plan.pass("delete"), real->remove(file); }
  std::vector<std::string> plainFiles(const Path& folder) const override {
    return plan.pass("list"), real->plainFiles(folder);
  }
  std::optional<FileStamp> stamp(const Path& file) const override {
    return plan.strikes("stamp") ? std::nullopt : real->stamp(file);
  }
  std::unique_ptr<FolderLock> lock(const Path& folder) override {
    return plan.strikes("lock") ? nullptr : real->lock(folder);
  }
  void flushFolder(const Path& f) override { plan.pass("flush folder"), real->flushFolder(f); }
  Plan& plan;
  CodePage page = CodePage::windows1252();
  std::unique_ptr<FileSystem> real = posixFileSystem(page);
};

const std::string entry = "time 1700000100\nclick ProjectDir\ntype ProjectDir {home}/MAGNET\n";
const std::string editing = R"(select 6
type PropertyDescription Field at the four probes
click EditCmd
type PropertyName NEW
click HistoryCheck
click AlarmWatchCheck
click DeviceListCheck
type deviceNamesInputText A\r\nB\r\n
leave deviceNamesInputText
click EditCmd
select 7
type PropertyName SWEEP
click ProcessCheck
click EditCmd
time 1700000200
)";
const std::string done = "answer yes\nclick Command1\n";

/// The wizard on a copy of the example project, with an old backup and an empty repository.
struct Project {
  explicit Project(Plan faults = {}) : plan(std::move(faults)) {
    std::filesystem::copy(KOVA_EXAMPLE, home.path("MAGNET"));
    std::filesystem::create_directory(home.path("fec"));
    home.write("MAGNET/exports-1600000000.csv", "long past");
    former = contents(false);
    start();
  }
  void start() {
    const Plan later = std::exchange(plan, {});
    wizard = std::make_unique<Engineer>(home.path(), &files);
    wizard->start();
    act("setenv FEC_HOME {home}/fec\ntype ExportName NEW\nclick cProject\n");
    plan = later;
  }
  void act(const std::string& lines) const {
    std::istringstream acts(lines);
    for (std::string line; std::getline(acts, line);) {
      // Nobody selects a line that a project which was not read does not show.
      const bool selects =
          line.starts_with("select") && wizard->program.wizard.state.exportCount < 8;
      if (!selects) wizard->carryOut(line);
    }
  }
  Contents contents(bool backups) const {
    static const std::regex stamp("-1[67]00000[0-9]00");
    Contents all;
    for (const auto& file : std::filesystem::recursive_directory_iterator(home.path())) {
      const std::string name = file.path().lexically_relative(home.path()).native();
      if (!file.is_regular_file() || (!backups && std::regex_search(name, stamp))) continue;
      all[name] = home.read(name);
    }
    return all;
  }
  /// What holds at any time: nothing hidden is left, nothing of the former tables is lost.
  void expectNothingLost() const {
    const Contents all = contents(true);
    for (const auto& file : all) EXPECT_EQ(file.first.find("/."), std::string::npos) << file.first;
    for (const auto& table : former) {
      EXPECT_TRUE(std::any_of(all.begin(), all.end(), [&](const auto& file) {
        return file.second == table.second;
      })) << table.first;
    }
  }
  /// Message by message what Done says about a failure, and whether it goes on behind it.
  void expectAnswer() const {
    auto& said = wizard->messages;
    if (!said.empty() && said.front().find("Do you want") != std::string::npos) said.pop_front();
    const std::string why = " : (" + reason + "|File exists)";
    const std::regex goesOn("Couldn't copy .*" + why);
    const std::regex ends("Could not (create exports\\.csv file|write \\S+)" + why);
    const bool silent = std::set<std::string>{"look", "stamp", "lock"}.contains(plan.struck);
    EXPECT_TRUE(said.size() == 1 || plan.onwards || (said.empty() && silent));
    const bool ended = said.empty() || std::regex_match(said.back(), goesOn);
    for (const std::string& text : said) {
      const bool last = &text == &said.back();
      EXPECT_TRUE(std::regex_match(text, last && !ended ? ends : goesOn)) << text;
    }
    EXPECT_EQ(wizard->ended, ended);
    EXPECT_EQ(wizard->programs.started.size(), ended ? 2U : 0U);
    said.clear();
  }

  TemporaryFolder home;
  Plan plan;
  FailingFiles files{plan};
  std::unique_ptr<Engineer> wizard;
  Contents former;
};

void finishWithFault(const Plan& plan, const Contents& finished) {
  Project project(plan);
  project.act(entry + editing);
  EXPECT_EQ(project.contents(false), project.former);
  project.expectNothingLost();
  const bool inDone = project.plan.struck.empty();
  if (inDone) {
    project.act(done);
    for (const auto& [name, bytes] : project.contents(false)) {
      EXPECT_TRUE(bytes == finished.at(name) || bytes == project.former[name]) << name;
    }
    project.expectNothingLost();
    project.expectAnswer();
  }
  project.plan.failing = 0;
  if (!inDone) project.wizard->messages.clear();
  if (!inDone && !plan.onwards) {
    project.act("type ProjectDir {home}\n" + entry);
    EXPECT_EQ(project.wizard->carryOut("counts 8 2 2"), "");
    project.start();
    project.act(entry + editing);
  }
  project.act("time 1700000300\n" + done);
  EXPECT_TRUE(project.wizard->ended);
  EXPECT_EQ(project.wizard->messages.size(), 1U);
  if (inDone || !plan.onwards) {
    EXPECT_EQ(project.contents(false), finished);
  }
  project.expectNothingLost();
}

TEST(Faults, EveryCallOfARunMayFail) {
  Project clean;
  clean.act(entry + editing + done);
  ASSERT_EQ(clean.wizard->messages.size(), 1U);
  clean.expectNothingLost();
  const Contents finished = clean.contents(false);
  ASSERT_EQ(finished.size(), 13U);
  int points = 0;
  for (const bool onwards : {false, true}) {
    for (int call = 1; call <= clean.plan.calls && !HasFailure(); ++call, ++points) {
      SCOPED_TRACE("call " + std::to_string(call) + (onwards ? " and all later ones" : ""));
      finishWithFault({.failing = call, .onwards = onwards}, finished);
    }
  }
  for (const auto& [kind, calls] : clean.plan.kinds)
    std::cout << kind << ": " << calls.size() << "\n";
  std::cout << "points: " << points << "\n";
}

TEST(Faults, GeneratorsThatCannotBeStartedCostAMessageEach) {
  Project project;
  project.wizard->programs.failure = reason;
  project.act(entry + done);
  const std::string folder = project.home.path("MAGNET");
  const auto& said = project.wizard->messages;
  ASSERT_EQ(said.size(), 3U);
  EXPECT_EQ(said[1], "Could not start vbskelgen.exe " + folder + " : " + reason);
  EXPECT_EQ(said[2], "Could not start cskelgen.exe " + folder + " LINUX : " + reason);
  EXPECT_TRUE(project.wizard->ended);
}

}  // namespace
}  // namespace kova::test
