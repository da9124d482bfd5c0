// SPDX-License-Identifier: MIT
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <regex>
#include <thread>

#include "platform/real_files.h"

namespace kova::test {

struct ProgramStarter : testing::Test {
  void SetUp() override { std::filesystem::current_path(folder.path()); }
  void TearDown() override { std::filesystem::current_path("/"); }

  /// The program "record" of a subfolder writes its words, what it has open, and whether it belongs
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
    std::string content;
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
  static_cast<void>(std::signal(SIGUSR1, SIG_IGN));
  sigset_t blocked{};
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGTERM);
  ::pthread_sigmask(SIG_BLOCK, &blocked, nullptr);

  start("record  a;b \xB0 $(x) '*");

  EXPECT_EQ(written("far/out", "end"), "[a;b][\u00B0][$(x)]['*]/dev/null\nend\n");
  start("cp /proc/self/status status");
  // The last digits: those ahead of them are of signals that the C library keeps for itself.
  const std::regex none("SigBlk:.*0000000\nSigIgn:.*0000000\n");
  EXPECT_TRUE(std::regex_search(written("near/status", "SigCgt"), none));
  ::close(9);
  ::pthread_sigmask(SIG_UNBLOCK, &blocked, nullptr);
  static_cast<void>(std::signal(SIGUSR1, SIG_DFL));
  for (const char* line : {"", "  ", "./record a", "/bin/true", "missing", "true -o", "-record"}) {
    EXPECT_THROW(start(line), Failure) << line;
  }
  EXPECT_THROW(start(std::string_view("true a\0b", 8)), Failure);
  ::setenv("PATH", unusable.c_str(), 1);
  EXPECT_EQ(failureOf([] { start("record"); }),
            "record is on the search path but may not be executed");
  ::unsetenv("PATH");
  EXPECT_THROW(start("record"), Failure);
}

}  // namespace kova::test
