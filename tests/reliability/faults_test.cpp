// SPDX-License-Identifier: MIT
// A whole run of the wizard, again and again, with one of its calls to the system failing, or
// killed at it, and the order of its calls.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <regex>

#include "reliability/system_calls.h"
#include "review/review_pages.h"
#include "support/engineer.h"

namespace kova::test {
namespace {

using Texts = std::vector<std::string>;

/// Where a hidden name begins in a path.
constexpr const char* hidden = "/.";

/// The wizard on a copy of the example project, with an old backup and an empty repository.
struct Project {
  Project() {
    std::filesystem::copy(KOVA_EXAMPLE, home.path("MAGNET"));
    std::filesystem::create_directory(home.path("fec"));
    home.write("MAGNET/exports-1600000000.csv", "long past");
    former = tables();
    start();
  }

  void start() {
    wizard = std::make_unique<Engineer>(home.path());
    wizard->environment.values["FEC_HOME"] = home.path("fec");
    wizard->start();
    form().cProject.setValue(1);
  }

  void enter() const {
    wizard->clock.now = 1700000100;
    form().ProjectDir.click();
    form().ProjectDir.edit(home.path("MAGNET"), 0);
  }

  void edit() const {
    form().PropertyList.select(6);
    form().PropertyDescription.edit("Field at the four probes", 0);
    form().EditCmd.click();
  }

  /// Done, with copies to the repository.
  void finish() const {
    wizard->clock.now = 1700000200;
    wizard->answers.push_back(Answer::yes);
    form().Command1.click();
  }

  /// Those that are no backups, and what is left under hidden names.
  Files tables() const {
    Files all = files();
    std::erase_if(all, [](const auto& file) { return file.first.find("-1") < file.first.size(); });
    return all;
  }

  Files files() const {
    Files all;
    for (auto& [path, bytes] : filesBelow(home.path())) {
      all[path.substr(home.path().size() + 1)] = bytes;
    }
    return all;
  }

  /// What holds at any moment: a table is the former or the new one, and what a former one held
  /// lies in it or in a backup. True if something is left under a hidden name.
  bool expectWholeTables(const Files& finished) const {
    bool isLeft = false;
    std::set<std::string> contents;
    for (const auto& [name, bytes] : files()) contents.insert(bytes);
    for (const auto& [name, bytes] : former) EXPECT_TRUE(contents.contains(bytes)) << name;
    for (const auto& [name, bytes] : tables()) {
      const bool isHidden = name.find(hidden) < name.size();
      const bool old = former.contains(name) && bytes == former.at(name);
      EXPECT_TRUE(old || isHidden || bytes == finished.at(name)) << name;
      isLeft = isLeft || isHidden;
    }
    return isLeft;
  }

  /// What Done has said behind its question.
  Texts messages() const {
    const bool asked = !wizard->messages.empty() && wizard->messages.front().ends_with(" ?");
    return {wizard->messages.begin() + (asked ? 1 : 0), wizard->messages.end()};
  }

  bool isRead() const { return wizard->program.wizard.state.project.exportCount == 8; }
  Form1& form() const { return wizard->program.wizard.form; }

  TemporaryFolder home;
  std::unique_ptr<Engineer> wizard;
  Files former;
};

struct Faults : testing::Test {
  Faults() {
    Project clean;
    finishedIn = clean.home.path();
    systemCalls().folder = finishedIn;
    clean.enter();
    clean.edit();
    entered = systemCalls().made.size();
    clean.finish();
    calls = std::exchange(systemCalls(), {}).made;
    finished = clean.tables();
    EXPECT_TRUE(clean.wizard->ended);
    EXPECT_EQ(finished.size(), 11U);
  }

  /// Which calls of the run are struck: some of each kind, or all of them on request.
  std::vector<std::size_t> moments() const {
    const int every = std::getenv("KOVA_EVERY_CALL") != nullptr ? 1 : 8;
    std::map<std::string, int> seen;
    std::vector<std::size_t> chosen;
    for (std::size_t at = 1; at <= calls.size(); ++at) {
      if (seen[calls[at - 1].name]++ % every == 0) chosen.push_back(at);
    }
    return chosen;
  }

  /// True if the engineer was told.
  bool survives(const SystemCalls& fault) const {
    Project project;
    systemCalls() = fault;
    systemCalls().folder = project.home.path();
    project.enter();
    const std::string& status = project.wizard->program.wizard.statusLine.message;
    EXPECT_FALSE(project.isRead() && status.starts_with("Project not read")) << status;
    if (project.isRead()) project.edit();
    const std::string& name = calls[fault.at - 1].name;
    const std::string& path = calls[fault.at - 1].path;
    const bool inDone = fault.at > entered;
    if (inDone) project.finish();
    EXPECT_GE(std::exchange(systemCalls(), {}).made.size(), fault.at);

    const Texts said = project.messages();
    EXPECT_TRUE(said.size() <= (inDone ? 1U : 0U) || fault.onwards);
    const bool hides = project.expectWholeTables(inDone ? finished : project.former);
    EXPECT_TRUE(!hides || fault.onwards) << "a hidden file is left";
    if (inDone) {
      const std::string why = std::string(" : (File exists|") + std::strerror(fault.error) + ')';
      const std::regex stop("Could not (create exports\\.csv file|write \\S+)" + why);
      const bool stopped = !said.empty() && std::regex_match(said.back(), stop);
      EXPECT_EQ(project.wizard->ended, !stopped) << said.back();
      EXPECT_EQ(project.wizard->programs.started.size(), stopped ? 0U : 2U);
      // Nothing that fails on a file that is being written is silent, and nothing else that
      // matters.
      const bool beingWritten = path.find(hidden) < path.size() && name != "open";
      EXPECT_TRUE(!said.empty() || (project.tables() == finished && !beingWritten));
    } else {
      project.start();
      project.enter();
      project.edit();
    }

    project.finish();
    EXPECT_TRUE(project.wizard->ended) << "without the fault";
    EXPECT_EQ(project.tables(), finished);
    project.expectWholeTables(finished);
    return !said.empty();
  }

  std::vector<SystemCalls::Call> calls;
  std::size_t entered = 0;  ///< how many of them lie ahead of Done
  Files finished;
  std::string finishedIn;  ///< the folder that they were made in
};

TEST_F(Faults, EveryKindOfCallMayFail) {
  std::map<std::string, std::array<int, 2>> answers;
  for (const bool onwards : {false, true}) {
    for (const std::size_t at : moments()) {
      const std::string& kind = calls[at - 1].name;
      SCOPED_TRACE(kind + " fails as call " + std::to_string(at) + (onwards ? " and on" : ""));
      const bool reported =
          survives({.at = at, .error = onwards ? EIO : ENOSPC, .onwards = onwards});
      ++answers[kind].at(reported ? 1 : 0);
      if (HasFailure()) return;
    }
  }
  std::set<std::string> silent;
  for (const auto& [kind, counts] : answers) {
    RecordProperty(kind + " silent", counts[0]);
    RecordProperty(kind + " told", counts[1]);
    if (counts[1] == 0) silent.insert(kind);
  }
  EXPECT_EQ(answers.size(), 16U);
  EXPECT_EQ(silent, (std::set<std::string>{"futimens", "linkat", "opendir", "unlink"}));
}

TEST_F(Faults, AKillAtAnyMomentLeavesWholeTables) {
  std::map<std::string, int> left;
  for (const std::size_t at : moments()) {
    SCOPED_TRACE("killed at call " + std::to_string(at) + ", " + calls[at - 1].name);
    Project project;
    const pid_t child = ::fork();
    if (child == 0) {
      systemCalls() = {.folder = project.home.path(), .at = at};
      project.enter();
      project.edit();
      project.finish();
      ::_exit(0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status)) << "it ended by itself";
    ++left["killed"];
    if (project.expectWholeTables(finished)) ++left["hidden"];
    if (project.tables() != project.former && project.tables() != finished) ++left["mixed"];

    project.enter();
    ASSERT_TRUE(project.isRead());
    project.edit();
    project.finish();
    EXPECT_EQ(project.tables(), finished);
    if (HasFailure()) return;
  }
  for (const auto& [what, count] : left) RecordProperty(what, count);
}

TEST_F(Faults, AnInterruptedCheckIsRepeated) {
  for (const std::size_t at : moments()) {
    if (calls[at - 1].name != "stat") continue;
    EXPECT_FALSE(survives({.at = at, .error = EINTR})) << "call " << at;
  }
}

TEST_F(Faults, DoneFlushesEachTableAheadOfItsLastLook) {
  const std::string folder = finishedIn + "/MAGNET";
  std::map<std::string, std::size_t> looked;
  std::map<std::string, std::size_t> flushed;
  for (std::size_t at = entered; at < calls.size(); ++at) {
    const SystemCalls::Call& call = calls[at];
    if (call.name == "stat") looked[call.path] = at;
    if (call.name == "fsync") flushed[call.path] = at;
    const bool replaces = call.name == "rename" && call.with.starts_with(folder);
    EXPECT_TRUE(!replaces || flushed[call.path] < looked[call.with]) << call.with;
  }
}

TEST(Restoring, LosesNoPresentTableWhateverFailsAndIsFlushedInTheEnd) {
  std::vector<SystemCalls::Call> made;
  std::string folder;
  std::size_t at = 0;
  do {
    SCOPED_TRACE("call " + std::to_string(++at));
    Project project;
    Wizard& wizard = project.wizard->program.wizard;
    folder = wizard.state.project.projectPath = project.home.path("MAGNET");
    project.wizard->answers.push_back(Answer::yes);
    systemCalls() = {.folder = folder, .at = at, .error = EIO};
    const auto sets = backupSetsOf(wizard);
    if (!sets.empty()) confirmAndRestore(wizard, sets.front());
    made = std::exchange(systemCalls(), {}).made;
    project.expectWholeTables({{"MAGNET/exports.csv", "long past"}});
    const bool reported = sets.empty() || project.messages().size() > 1;
    EXPECT_TRUE(reported || project.home.read("MAGNET/exports.csv") == "long past");
  } while (made.size() >= at);
  EXPECT_GT(at, 20U);
  bool flushed = true;
  for (const SystemCalls::Call& call : made) {
    if (call.name == "rename" || call.name == "linkat") flushed = false;
    if (call.name == "fsync" || call.name == "syncfs") flushed = flushed || call.path == folder;
  }
  EXPECT_TRUE(flushed);
}

TEST(Generators, ThatCannotBeStartedCostAMessageEach) {
  Project project;
  project.wizard->programs.failure = "no such program";
  project.enter();
  project.finish();
  const std::string folder = project.home.path("MAGNET");
  EXPECT_EQ(project.messages(),
            (Texts{"Could not start vbskelgen.exe " + folder + " : no such program",
                   "Could not start cskelgen.exe " + folder + " LINUX : no such program"}));
  EXPECT_TRUE(project.wizard->ended);
}

}  // namespace
}  // namespace kova::test
