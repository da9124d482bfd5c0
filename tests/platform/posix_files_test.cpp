// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <functional>

#include "platform/machine.h"
#include "support/temporary_folder.h"

namespace kova::test {

using Names = std::set<std::string>;
using Act = std::function<void()>;

// Version 2; of owner, user 65533, group, mask and others the kind with the permissions, the
// account.
constexpr std::array<std::uint32_t, 11> accessList{2,   0x60001, ~0U, 0x40002, 65533, 0x40004,
                                                   ~0U, 0x40010, ~0U, 0x20,    ~0U};
constexpr const char* accessListName = "system.posix_acl_access";
constexpr const char* newFilesListName = "system.posix_acl_default";

class PosixFiles : public ::testing::Test {
 protected:
  PosixFiles() { ::chmod(folder.path().c_str(), 0777); }

  Path path(const std::string& name) const { return files->path(folder.path(name)); }
  void replaceBy(const std::string& name, std::string_view content) const {
    replace(*files, path(name), content);
  }
  void link(const std::string& to, const std::string& name) const {
    std::filesystem::create_symlink(to, folder.path(name));
  }
  void allow(const std::string& name, mode_t mode) const {
    ASSERT_EQ(::chmod(folder.path(name).c_str(), mode), 0);
  }
  // False where temporary files have no access lists.
  bool setList(const std::string& name, const char* attribute) const {
    const std::string file = folder.path(name);
    return ::setxattr(file.c_str(), attribute, accessList.data(), sizeof accessList, 0) == 0;
  }
  bool hasList(const std::string& name) const {
    std::array<std::uint32_t, accessList.size()> kept{};
    ::getxattr(folder.path(name).c_str(), accessListName, kept.data(), sizeof kept);
    return kept == accessList;
  }
  bool mark(const std::string& name) const {
    return ::setxattr(folder.path(name).c_str(), "user.state", "seen", 4, 0) == 0;
  }
  bool isMarked(const std::string& name) const {
    std::array<char, 9> value{};
    const auto size = ::getxattr(folder.path(name).c_str(), "user.state", value.data(), 9);
    return size == 4 && std::string_view(value.data()) == "seen";
  }
  mode_t modeOf(const std::string& name) const {
    struct stat state {};
    return ::lstat(folder.path(name).c_str(), &state) == 0 ? state.st_mode : 0;
  }
  static std::string failureOf(const Act& act) {
    try {
      act();
      return "no failure";
    } catch (const Failure& failure) {
      return failure.what();
    }
  }
  // From now on the system answers these calls with this error.
  static Act refusing(const std::vector<unsigned>& calls, unsigned error) {
    return [=] {
      std::vector<sock_filter> program{BPF_STMT(BPF_LD | BPF_W | BPF_ABS, 0)};
      for (const unsigned call : calls) {
        program.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, call, 0, 1));
        program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | error));
      }
      program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
      const sock_fprog filter{static_cast<unsigned short>(program.size()), program.data()};
      if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) ::_exit(3);
      if (::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) != 0) ::_exit(4);
    };
  }
  static void becomeNobody() {
    if (::geteuid() != 0) return;
    if (::setgroups(0, nullptr) != 0 || ::setgid(65534) != 0 || ::setuid(65534) != 0) ::_exit(2);
  }
  // In a process of its own, which `prepare` limits.
  static bool failsInChild(const Act& prepare, const Act& act, const std::string& failure) {
    const pid_t child = ::fork();
    if (child == 0) {
      prepare();
      ::_exit(failureOf(act) == failure ? 0 : 1);
    }
    int status = -1;
    return ::waitpid(child, &status, 0) == child && status == 0;
  }

  TemporaryFolder folder;
  CodePage page = CodePage::windows1252();
  std::unique_ptr<FileSystem> files = realFileSystem(page);
};

TEST_F(PosixFiles, ReplaceKeepsPermissionsAndLinks) {
  folder.write("real.csv", "old");
  allow("real.csv", 0664);
  link("real.csv", "link.csv");
  replaceBy("link.csv", "new");
  EXPECT_EQ(folder.read("real.csv"), "new");
  EXPECT_EQ(modeOf("real.csv"), mode_t{S_IFREG | 0664});
  const mode_t mask = ::umask(0027);
  replace(*realFileSystem(page), path("fresh.csv"), "");
  ::umask(mask);
  EXPECT_EQ(modeOf("fresh.csv"), mode_t{S_IFREG | 0640});
  EXPECT_TRUE(S_ISLNK(modeOf("link.csv")));
  EXPECT_EQ(folder.names(), (Names{"fresh.csv", "link.csv", "real.csv"}));
}

TEST_F(PosixFiles, ReplaceKeepsTheAttributesOfUsersAndTheAccessList) {
  folder.write("t.csv", "old");
  const bool marked = mark("t.csv");
  replaceBy("t.csv", "newer");
  EXPECT_EQ(isMarked("t.csv"), marked);
  // Not every file system that tests run on has such lists.
  if (!setList("t.csv", accessListName)) GTEST_SKIP() << "no access lists";
  replaceBy("t.csv", "new");
  EXPECT_TRUE(hasList("t.csv"));
  EXPECT_EQ(folder.read("t.csv"), "new");
}

TEST(Path, IsTakenApartAndPutTogether) {
  const auto expectParts = [](const char* path, const char* parent, const char* leaf) {
    EXPECT_EQ(Path{path}.parent().native, parent);
    EXPECT_EQ(Path{path}.leaf(), leaf);
    EXPECT_EQ(Path{parent} / leaf, Path{path});
  };
  expectParts("/a/b.csv", "/a/", "b.csv");
  expectParts("/a/", "/a/", "");
  expectParts("/a", "/", "a");
  expectParts("a", "", "a");
  EXPECT_EQ((Path{"/a"} / "b").native, "/a/b");
}

TEST_F(PosixFiles, PipesAndLinksWithoutAFileAreRefusedAtOnceAndNotListed) {
  ::mkfifo(folder.path("pipe").c_str(), 0666);
  std::filesystem::create_directory(folder.path("folder"));
  link("nowhere", "dangling");
  link("folder", "folderlink");
  link("loop", "loop");
  const auto refused = [&](const std::string& name, const char* read, const char* create) {
    EXPECT_EQ(failureOf([&] { files->read(path(name)); }), read) << name;
    EXPECT_EQ(failureOf([&] { replaceBy(name, "x"); }), create) << name;
  };
  refused("pipe", "Not a plain file", "Not a plain file");
  refused("dangling", "No such file or directory", "The link points to a file that does not exist");
  for (const char* name : {"B", "a\xFF"}) folder.write(name, "");
  link("B", "link");
  EXPECT_EQ(files->plainFiles({folder.path()}), (std::vector<std::string>{"B", "a\xFF", "link"}));
}

TEST_F(PosixFiles, AFailureLeavesTheFormerContent) {
  folder.write("t.csv", "old");
  folder.write("big", std::string(100000, 'x'));
  const auto limit = [] {
    const rlimit size{4096, 4096};
    ::setrlimit(RLIMIT_FSIZE, &size);
  };
  const Act write = [&] { replaceBy("t.csv", std::string(9000, 'x')); };
  const Act copy = [&] { files->copy(path("big"), path("t.csv")); };
  EXPECT_TRUE(failsInChild(limit, write, "File too large"));
  EXPECT_TRUE(failsInChild(limit, copy, "File too large"));
  allow("t.csv", 0444);
  EXPECT_TRUE(failsInChild(becomeNobody, write, "Permission denied"));
  allow("t.csv", 0666);
  allow(".", 0555);
  EXPECT_TRUE(failsInChild(becomeNobody, write, "Permission denied"));
  EXPECT_TRUE(failsInChild(becomeNobody, copy, "Permission denied"));
  allow(".", 0777);
  EXPECT_EQ(folder.read("t.csv"), "old");
  EXPECT_EQ(folder.names(), (Names{"big", "t.csv"}));
}

TEST_F(PosixFiles, AFileThatHoldsTheBytesAlreadyCostsNoFlush) {
  folder.write("t.csv", "same");
  const Act same = [&] { replaceBy("t.csv", "same"); };
  EXPECT_TRUE(failsInChild(refusing({SYS_fsync, SYS_rename}, EIO), same, "no failure"));
  allow(".", 0555);
  EXPECT_TRUE(failsInChild(becomeNobody, same, "Permission denied"));
  allow(".", 0777);
  allow("t.csv", 0444);
  EXPECT_TRUE(failsInChild(becomeNobody, same, "Permission denied"));
}

TEST_F(PosixFiles, ACopyKeepsModeAndTimeAndReplacesALink) {
  for (const char* name : {"from", "precious"}) folder.write(name, name);
  allow("from", 0440);
  const std::array<timespec, 2> times{{{1000, 5}, {2000, 7}}};
  ::utimensat(AT_FDCWD, folder.path("from").c_str(), times.data(), 0);
  link("precious", "to");
  files->copy(path("from"), path("to"));
  EXPECT_EQ(folder.read("to"), "from");
  EXPECT_EQ(modeOf("to"), mode_t{S_IFREG | 0440});
  EXPECT_EQ(files->state(path("to"))->modified, 2'000'000'000'007);
}

TEST_F(PosixFiles, ACopyLetsInNobodyElse) {
  // The files of the cases belong to somebody else, which root alone can arrange.
  if (::geteuid() != 0) GTEST_SKIP() << "only root gives files away";
  const auto original = [&](const std::string& name, mode_t mode) {
    folder.write(name, "");
    ASSERT_EQ(::chown(folder.path(name).c_str(), 65534, 1234), 0);
    allow(name, mode);
  };
  const auto expectCopy = [&](const Act& prepare, const std::string& from, mode_t mode) {
    std::filesystem::remove(folder.path("fresh"));
    const Act copy = [&] {
      for (const char* to : {"to", "fresh"}) files->copy(path(from), path(to));
    };
    EXPECT_TRUE(failsInChild(prepare, copy, "no failure")) << from;
    for (const char* to : {"to", "fresh"}) EXPECT_EQ(modeOf(to), S_IFREG | mode) << to << from;
  };
  original("group", 0660);
  expectCopy([] {}, "group", 0660);
  struct stat state {};
  ::stat(folder.path("to").c_str(), &state);
  EXPECT_EQ(state.st_uid, 65534U);
  EXPECT_EQ(state.st_gid, 1234U);
  expectCopy(becomeNobody, "group", 0600);
  for (const auto& [mode, kept] : {std::pair(0664U, 0604U), std::pair(0604U, 0600U)}) {
    original("others", mode);
    expectCopy(becomeNobody, "others", kept);
  }

  original("list", 0644);
  // Not every file system that tests run on has such lists.
  if (!setList("list", accessListName)) GTEST_SKIP() << "no access lists";
  expectCopy([] {}, "list", 0640);
  EXPECT_TRUE(hasList("to") && hasList("fresh"));
  expectCopy(refusing({SYS_fsetxattr}, ENOTSUP), "list", 0600);
  expectCopy(becomeNobody, "list", 0600);
  const auto expectNoList = [&](const std::string& to) {
    EXPECT_EQ(::getxattr(folder.path(to).c_str(), accessListName, nullptr, 0), -1) << to;
  };
  expectNoList("to");
  ASSERT_TRUE(setList(".", newFilesListName));
  expectCopy([] {}, "group", 0660);
  for (const char* to : {"to", "fresh"}) expectNoList(to);
}

TEST_F(PosixFiles, PermissionsThatCannotBeChosenAreNoFailure) {
  folder.write("from", "bytes");
  for (const unsigned error : std::vector<unsigned>{EPERM, EOPNOTSUPP, ENOSYS}) {
    folder.write("t.csv", "old");
    allow("t.csv", 0600);
    mark("t.csv");
    std::vector<unsigned> calls{SYS_fchmod, SYS_fchown, SYS_utimensat, SYS_fsetxattr};
    if (error != EPERM) calls.insert(calls.end(), {SYS_getxattr, SYS_fgetxattr});
    const Act mount = refusing(calls, error);
    const Act work = [&] {
      files->copy(path("from"), path("to"));
      replaceBy("t.csv", "new");
      replaceBy("t.csv", "newer");
    };
    EXPECT_TRUE(failsInChild(mount, work, "no failure")) << error;
    EXPECT_EQ(folder.read("to"), "bytes");
    EXPECT_EQ(folder.read("t.csv"), "newer");
    for (const char* name : {"to", "t.csv"}) files->remove(path(name));
  }
}

TEST_F(PosixFiles, WhatMustOutlastALossOfPowerIsFlushed) {
  for (const char* name : {"from", "to"}) folder.write(name, name);
  const auto expect = [&](const Act& mount, const Act& act, const std::string& failure) {
    EXPECT_TRUE(failsInChild(mount, act, failure));
  };
  const Act noFlush = refusing({SYS_fsync, SYS_syncfs}, EIO);
  expect(
      noFlush, [&] { files->copy(path("from"), path("to")); }, "Input/output error");
  EXPECT_EQ(folder.read("to"), "to");
  expect(
      noFlush, [&] { files->copyAside(path("from"), path("aside")); }, "Input/output error");
  expect(
      noFlush, [&] { files->createFolder(path("folder/")); }, "Input/output error");
  expect(
      noFlush, [&] { files->copy(path("from"), path("fresh")); }, "no failure");
  const Act flushAll = [&] { files->flushAll(path(".")); };
  expect(noFlush, flushAll, "Input/output error");
  expect(refusing({SYS_syncfs}, ENOSYS), flushAll, "no failure");
  // A folder may need no flush; its files do.
  expect(refusing({SYS_fsync, SYS_syncfs}, EINVAL), flushAll, "Invalid argument");
  // Where the kind of disk can't be told, nor is a flush for all believed.
  const Act unknownDisk = [] {
    refusing({SYS_fstatfs}, EIO)();
    refusing({SYS_fsync}, EROFS)();
  };
  expect(unknownDisk, flushAll, "Read-only file system");
  const Act flushEarlier = [&] {
    const auto output = files->create(path("t.csv"));
    output->write("whole");
    output->flush();
    noFlush();
    output->close();
  };
  expect([] {}, flushEarlier, "no failure");
  EXPECT_EQ(folder.read("t.csv"), "whole");

  const Act copyTwice = [&] {
    if (!files->copyAside(path("from"), path("aside"))) throw Failure("not free");
    if (!files->copyAside(path("to"), path("aside"))) throw Failure("taken");
  };
  for (const Act& mount : {Act([] {}), refusing({SYS_renameat2}, EINVAL)}) {
    expect(mount, copyTwice, "taken");
    EXPECT_EQ(folder.read("aside"), "from");
    files->remove(path("aside"));
  }
}

TEST_F(PosixFiles, OnlyHiddenFilesThatNobodyHoldsAreRemoved) {
  const std::string longest(255, 'x');
  folder.write("from", "");
  const Act killed = [&] {
    static_cast<void>(files->create(path(longest)).release());
    static_cast<void>(files->create(path("t.csv")).release());
    refusing({SYS_unlink}, EIO)();
    refusing({SYS_rename, SYS_linkat}, EIO)();
    files->copy(path("from"), path("to"));
  };
  EXPECT_TRUE(failsInChild([] {}, killed, "Input/output error"));
  EXPECT_EQ(folder.names().size(), 4U);
  Names others{".t.csv~1", ".link.kova~1"};
  for (const auto& name : others) folder.write(name, "somebody's own");
  std::filesystem::create_hard_link(path(".link.kova~1").native, folder.path("second name"));
  std::filesystem::create_directory(folder.path(".folder.kova~1"));
  others.insert({".folder.kova~1", "from", "second name"});

  files->removeStaleTemporaryFiles(path("."));

  EXPECT_EQ(folder.names(), others);
}

TEST_F(PosixFiles, TemporaryFilesOfOtherAccountsAreLeftAlone) {
  // The files of the cases belong to somebody else, which root alone can arrange.
  if (::geteuid() != 0) GTEST_SKIP() << "only root gives files away";
  const Names theirs{".t.csv.kova~1", ".copy.kova~2", ".t.csv.kova~0123456789abcdef"};
  folder.write("from", "from");
  const Act work = [&] {
    replaceBy("t.csv", "ours");
    files->copyAside(path("from"), path("copy"));
    files->removeStaleTemporaryFiles(path("."));
  };
  const auto ownerOf = [&](const std::string& name) {
    struct stat state {};
    return ::lstat(folder.path(name).c_str(), &state) == 0 ? state.st_uid : ~0U;
  };
  for (const mode_t mode : {0777U, 01777U}) {
    allow(".", mode);
    for (const auto& [becoming, account] : {std::pair(Act([] {}), 0U), {becomeNobody, 65534U}}) {
      for (const auto& name : theirs) {
        folder.write(name, "theirs");
        ASSERT_EQ(::chown(folder.path(name).c_str(), 1234, 1234), 0);
        allow(name, 0666);
      }
      EXPECT_TRUE(failsInChild(becoming, work, "no failure"));
      for (const auto& name : theirs) {
        EXPECT_EQ(folder.read(name), "theirs");
        EXPECT_EQ(ownerOf(name), 1234U);
        EXPECT_EQ(modeOf(name), mode_t{S_IFREG | 0666});
      }
      for (const char* name : {"t.csv", "copy"}) {
        EXPECT_EQ(ownerOf(name), account) << name;
        files->remove(path(name));
      }
    }
  }
}

TEST_F(PosixFiles, ACheckThatFailsIsNoAbsence) {
  folder.write("t.csv", "");
  const std::vector<Act> checks{[&] { files->fileExists(path("t.csv")); },
                                [&] { files->folderExists(path(".")); },
                                [&] { files->state(path("t.csv")); }};
  for (const int error : {EACCES, EIO, ESTALE, ETIMEDOUT, ENAMETOOLONG, ENOENT, ENOTDIR}) {
    const bool isAbsence = error == ENOENT || error == ENOTDIR;
    const std::string failure = isAbsence ? "no failure" : ::strerror(error);
    const Act disk = refusing({SYS_newfstatat}, static_cast<unsigned>(error));
    for (const Act& check : checks) EXPECT_TRUE(failsInChild(disk, check, failure)) << failure;
  }
}

}  // namespace kova::test
