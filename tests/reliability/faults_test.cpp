// SPDX-License-Identifier: MIT
// A whole run of the wizard, again and again, with one of its calls to the system failing.
#include "reliability/faults.h"
#include "review/review_pages.h"

namespace kova::test {
namespace {

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
  EXPECT_EQ(answers.size(), callsOfARun.kinds);
  EXPECT_EQ(silent, callsOfARun.silent) << "of the entry";
}

TEST(Restoring, LosesNoPresentTableWhateverFails) {
  std::size_t at = 0;
  for (bool struck = true; struck;) {
    Project project;
    Wizard& wizard = project.wizard->program.wizard;
    wizard.state.project.projectPath = project.home.path("MAGNET");
    project.wizard->answers.push_back(Answer::yes);
    systemCalls() = {.folder = wizard.state.project.projectPath, .at = ++at, .error = EIO};
    const auto sets = backupSetsOf(wizard);
    if (!sets.empty()) confirmAndRestore(wizard, sets.front());
    struck = std::exchange(systemCalls(), {}).made.size() >= at;
    SCOPED_TRACE("call " + std::to_string(at));
    const std::string table = std::string("MAGNET") + pathSeparator + "exports.csv";
    project.expectWholeTables({{table, "long past"}});
    const bool reported = sets.empty() || project.messages().size() > 1;
    EXPECT_TRUE(reported || project.home.read(table) == "long past");
  }
  EXPECT_GT(at, 20U);
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
