// SPDX-License-Identifier: MIT
// A whole run of the wizard, killed at one of its calls, and the order of its calls.
#include <sys/wait.h>
#include <unistd.h>

#include "reliability/faults.h"
#include "review/backup_sets.h"

namespace kova::test {
namespace {

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

/// The folders that have got names which no later flush has reached.
std::set<std::filesystem::path> foldersNotFlushed(const std::vector<SystemCalls::Call>& calls) {
  std::set<std::filesystem::path> folders;
  for (const SystemCalls::Call& call : calls) {
    const std::filesystem::path path(call.path);
    const bool names = call.name == "rename" || call.name == "linkat" || call.name == "mkdir";
    if (names && call.done) folders.insert((path / "..").lexically_normal());
    if (call.name == "fsync" || call.name == "syncfs") folders.erase(path / "");
  }
  return folders;
}

TEST_F(Faults, DoneReplacesTablesOnceAllBytesAreFlushedAndFlushesTheNamesInTheEnd) {
  std::set<std::filesystem::path> bytes;
  for (std::size_t at = 0; at < calls.size(); ++at) {
    const SystemCalls::Call& call = calls[at];
    const std::filesystem::path path(call.path);
    if (call.name == "write") bytes.insert(path);
    if (call.name == "fsync" || call.name == "unlink") bytes.erase(path);
    // The repository may lie on another disk than the project.
    if (call.name == "syncfs") {
      std::erase_if(bytes, [&](const auto& file) { return file.parent_path() == path; });
    }
    if (call.name != "rename" && call.name != "linkat") continue;
    EXPECT_TRUE(at < entered || bytes.empty()) << call.with;
    if (bytes.erase(path) > 0) bytes.insert(call.with);
  }
  EXPECT_TRUE(foldersNotFlushed(calls).empty());
}

TEST_F(Faults, DoneAsksForOneLockAndFlushesEachTableAheadOfItsLastLook) {
  const std::string folder = finishedIn + "/MAGNET";
  std::map<std::string, std::size_t> looked;
  std::map<std::string, std::size_t> flushed;
  int locks = 0;
  for (std::size_t at = entered; at < calls.size(); ++at) {
    const SystemCalls::Call& call = calls[at];
    if (call.name == "stat") looked[call.path] = at;
    if (call.name == "fsync") flushed[call.path] = at;
    if (call.name == "flock" && call.path == folder) ++locks;
    const bool replaces = call.name == "rename" && call.with.starts_with(folder);
    EXPECT_TRUE(!replaces || flushed[call.path] < looked[call.with]) << call.with;
  }
  EXPECT_EQ(locks, 1);
}

TEST(Restoring, IsFlushedInTheEnd) {
  Project project;
  const Platform& platform = project.wizard->program.wizard.platform;
  const std::string folder = project.home.path("MAGNET");
  const auto sets = backupSets(platform.files, Path{folder});
  systemCalls() = {.folder = folder};
  EXPECT_EQ(restore(platform, folder, sets.front()).files, Texts{"exports.csv"});
  EXPECT_TRUE(foldersNotFlushed(std::exchange(systemCalls(), {}).made).empty());
}

TEST(Folders, CostAFewCallsALevel) {
  constexpr std::size_t levels = 300;
  Project project;
  project.enter();
  project.form().PropertyList.select(0);
  std::string chain = project.home.path();
  for (std::size_t level = 0; level < levels; ++level) chain += "/d";
  project.form().ProjectDir.edit(chain, 0);
  project.form().EditCmd.click();
  systemCalls() = {.folder = project.home.path()};
  project.finish();
  const auto made = std::exchange(systemCalls(), {}).made;
  EXPECT_LT(made.size(), levels * 10);
  EXPECT_TRUE(foldersNotFlushed(made).empty());
  EXPECT_TRUE(project.home.has(chain.substr(project.home.path().size() + 1) + "/exports.csv"));
}

}  // namespace
}  // namespace kova::test
