// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "platform/posix.h"
#include "support/temporary_folder.h"

namespace kova::test {

TEST(ProgramStarter, SearchesAbsoluteFoldersOnlyAndHandsWordsOver) {
  const TemporaryFolder folder;
  for (const std::string where : {"near", "far", "none"}) {
    std::filesystem::create_directory(folder.path(where));
    folder.write(where + "/record",
                 "#!/bin/sh\ncd \"${0%/*}\"; { printf '[%s]' \"$@\"; readlink /proc/$$/fd/0\n"
                 "[ -e /proc/$$/fd/9 ] && echo inherited; } > out; mv out done\n");
    if (where != "none")
      std::filesystem::permissions(folder.path(where + "/record"), std::filesystem::perms{0755});
  }
  const auto start = [](std::string_view commandLine) {
    posixProgramStarter(CodePage::windows1252())->start(commandLine);
  };
  std::filesystem::current_path(folder.path("near"));
  ::dup2(STDERR_FILENO, 9);
  const std::string relative = "::.:../near:" + folder.path("none");
  ::setenv("PATH", (relative + ":" + folder.path("far") + ":/bin:/usr/bin").c_str(), 1);
  start("record  a;b \xB0 $(x) '*");
  for (int tries = 0; tries < 500 && !std::filesystem::exists(folder.path("far/done")); ++tries) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  ::close(9);
  EXPECT_EQ(folder.read("far/done"), "[a;b][\u00B0][$(x)]['*]/dev/null\n");
  for (const char* line : {"", "  ", "./record a", "/bin/true", "missing", "true -o", "-record"}) {
    EXPECT_THROW(start(line), Failure) << line;
  }
  EXPECT_THROW(start(std::string_view("true a\0b", 8)), Failure);
  ::setenv("PATH", relative.c_str(), 1);
  EXPECT_THROW(start("record"), Failure);
  ::unsetenv("PATH");
  EXPECT_THROW(start("record"), Failure);
  std::filesystem::current_path("/");
}

}  // namespace kova::test
