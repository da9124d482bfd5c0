// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <regex>
#include <thread>

#include "platform/machine.h"
#include "support/temporary_folder.h"

namespace kova::test {

class ProgramStarter : public ::testing::Test {
 protected:
  void SetUp() override { std::filesystem::current_path(folder.path()); }
  void TearDown() override { std::filesystem::current_path("/"); }

  /// The program "record" of a subfolder writes its words, what it has open and whether it belongs
  /// to the session of another, to "out".
  void writeProgram(const std::string& where) const {
    const std::string file = where + "/record";
    std::filesystem::create_directory(folder.path(where));
    folder.write(file,
                 "#!/bin/sh\ncd \"${0%/*}\"; { printf '[%s]' \"$@\"; readlink /proc/$$/fd/0\n"
                 "[ $$ = `cut -d' ' -f6 /proc/$$/stat` ] || echo session\n"
                 "[ -e /proc/$$/fd/9 ] && echo inherited; echo end; } > out\n");
    std::filesystem::permissions(folder.path(file), std::filesystem::perms{0755});
  }
  static void start(std::string_view commandLine) {
    realProgramStarter(CodePage::windows1252())->start(commandLine);
  }
  /// Content of a file that a started program writes, once it holds `end`.
  std::string written(const std::string& name, const std::string& end) const {
    using Clock = std::chrono::steady_clock;
    const auto giveUp = Clock::now() + std::chrono::minutes(2);
    std::string content = folder.read(name);
    while (content.find(end) == std::string::npos && Clock::now() < giveUp) {
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
      content = folder.read(name);
    }
    return content;
  }

  TemporaryFolder folder;
};

TEST_F(ProgramStarter, SearchesAbsoluteFoldersOnlyAndHandsWordsOver) {
  for (const char* where : {"near", "far", "none"}) writeProgram(where);
  std::filesystem::permissions(folder.path("none/record"), std::filesystem::perms{0644});
  std::filesystem::current_path(folder.path("near"));
  const std::string unusable = "::.:../near:" + folder.path("none");
  ::setenv("PATH", (unusable + ":" + folder.path("far") + ":/bin:/usr/bin").c_str(), 1);
  ::dup2(STDERR_FILENO, 9);
  ASSERT_NE(std::freopen("record", "r", stdin), nullptr);

  start("record  a;b \xB0 $(x) '*");

  EXPECT_EQ(written("far/out", "end"), "[a;b][\u00B0][$(x)]['*]/dev/null\nend\n");
  ::close(9);
  for (const char* line : {"", "  ", "./record a", "/bin/true", "missing", "true -o", "-record"}) {
    EXPECT_THROW(start(line), Failure) << line;
  }
  EXPECT_THROW(start(std::string_view("true a\0b", 8)), Failure);
  ::setenv("PATH", unusable.c_str(), 1);
  try {
    start("record");
    ADD_FAILURE() << "it was started";
  } catch (const Failure& failure) {
    EXPECT_STREQ(failure.what(), "record is on the search path but may not be executed");
  }
  ::unsetenv("PATH");
  EXPECT_THROW(start("record"), Failure);
}

TEST_F(ProgramStarter, HandsOnNoSignalsThatAreBlockedOrIgnored) {
  ::setenv("PATH", "/bin:/usr/bin", 1);
  static_cast<void>(std::signal(SIGUSR1, SIG_IGN));
  sigset_t blocked{};
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGTERM);
  ::pthread_sigmask(SIG_BLOCK, &blocked, nullptr);

  start("cp /proc/self/status status");

  // The last digits: those ahead of them are of signals that the C library keeps for itself.
  const std::string status = written("status", "SigCgt");
  EXPECT_TRUE(std::regex_search(status, std::regex("SigBlk:.*0000000\n"))) << status;
  EXPECT_TRUE(std::regex_search(status, std::regex("SigIgn:.*0000000\n"))) << status;
  ::pthread_sigmask(SIG_UNBLOCK, &blocked, nullptr);
  static_cast<void>(std::signal(SIGUSR1, SIG_DFL));
}

}  // namespace kova::test
