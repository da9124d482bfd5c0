// SPDX-License-Identifier: MIT
// Entries that accounts and roots of a POSIX system decide.
#include <sched.h>
#include <unistd.h>

#include "support/flow.h"

namespace kova::test {
namespace {

using std::filesystem::permissions;
using std::filesystem::perms;

struct PosixEntry : Flow {
  /// Of an account whose permissions stop at other people's files, which root's don't.
  std::string enteredByAnother() {
    const uid_t account = ::geteuid();
    if (account == 0 && ::seteuid(65534) != 0) return "no account";
    const std::string message = entered("MAGNET");
    return ::seteuid(account) == 0 ? message : "no way back";
  }
};

TEST_F(PosixEntry, TellsWhatToDoAboutFilesOfOthers) {
  home.write("MAGNET/priv\u00E9", "of a colleague");
  permissions(home.path("MAGNET/priv\u00E9"), perms::none);
  permissions(home.path("MAGNET"), perms::all | perms::sticky_bit);
  permissions(home.path(), perms(0755));
  EXPECT_EQ(enteredByAnother(),
            "Project not read: backup of priv\xE9: Permission denied. Move the file away, or make "
            "sure that it is readable and that the directory is writable and has free space.");
  if (::geteuid() != 0) return;
  home.write("MAGNET/exports-1600000000.csv", "of a colleague");
  EXPECT_EQ(enteredByAnother(),
            "Project not read: old backup exports-1600000000.csv: Operation not permitted. Delete "
            "the file or ask its owner to.");
}

TEST_F(PosixEntry, TheRootCanBeAProject) {
  const auto enterRoot = [&] {
    // As another account this takes a name space of its own.
    if (::geteuid() != 0 && ::unshare(CLONE_NEWUSER) != 0) ::_exit(2);
    if (::chroot(home.path("MAGNET").c_str()) != 0 || ::chdir("/") != 0) ::_exit(3);
    form.ProjectDir.click();
    type(form.ProjectDir, "/");
    if (engineer.rows() != Rows{.properties = 8, .history = 2, .alarms = 2}) ::_exit(4);
    form.Command1.click();
    ::_exit(engineer.programs.started == Lines{"vbskelgen.exe /"} ? 0 : 1);
  };
  EXPECT_EXIT(enterRoot(), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace kova::test
