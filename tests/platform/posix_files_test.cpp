// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "platform/real_files.h"
#include "reliability/system_calls.h"

namespace kova::test {

// Version 2; of owner, user 65533, group, mask and others the kind with the permissions, the
// account.
constexpr std::array<std::uint32_t, 11> accessList{2,   0x60001, ~0U, 0x40002, 65533, 0x40004,
                                                   ~0U, 0x40010, ~0U, 0x20,    ~0U};
constexpr const char* accessListName = "system.posix_acl_access";
constexpr const char* newFilesListName = "system.posix_acl_default";
constexpr const char* noLists = "the file system of temporary files has no access lists";
constexpr const char* notRoot = "only root gives files away";

struct PosixFiles : RealFiles {
  PosixFiles() { ::chmod(folder.path().c_str(), 0777); }

  void link(const std::string& to, const std::string& name) const {
    std::filesystem::create_symlink(to, folder.path(name));
  }
  void allow(const std::string& name, mode_t mode) const {
    ASSERT_EQ(::chmod(folder.path(name).c_str(), mode), 0);
  }
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
  struct stat stateOf(const std::string& name) const {
    struct stat state {};
    ::lstat(folder.path(name).c_str(), &state);
    return state;
  }
  mode_t modeOf(const std::string& name) const { return stateOf(name).st_mode; }
  /// What an act fails with where the system answers these calls with an error.
  std::string failureWith(std::set<std::string> calls, int error, const Act& act) const {
    systemCalls() = {.folder = folder.path(), .error = error, .refused = std::move(calls)};
    std::string failure = failureOf(act);
    systemCalls() = {};
    return failure;
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
};

TEST_F(PosixFiles, ReplaceKeepsLinksAttributesAndRightsAndACopyReplacesALink) {
  folder.write("real.csv", "old");
  allow("real.csv", 0664);
  const bool marked = mark("real.csv");
  link("real.csv", "link.csv");
  link("real.csv", "to");
  replaceBy("link.csv", "new");
  files->copy(path("link.csv"), path("to"));
  EXPECT_EQ(folder.read("real.csv"), "new");
  EXPECT_TRUE(S_ISLNK(modeOf("link.csv")));
  for (const char* name : {"real.csv", "to"}) EXPECT_EQ(modeOf(name), mode_t{S_IFREG | 0664});
  const std::string file = folder.path("real.csv");
  EXPECT_EQ(::getxattr(file.c_str(), "user.state", nullptr, 0) == 4, marked);
  const mode_t mask = ::umask(0027);
  replace(*realFileSystem(page), path("fresh.csv"), "");
  ::umask(mask);
  EXPECT_EQ(modeOf("fresh.csv"), mode_t{S_IFREG | 0640});
  EXPECT_EQ(folder.names(), (Names{"fresh.csv", "link.csv", "real.csv", "to"}));
  if (!setList("real.csv", accessListName)) GTEST_SKIP() << noLists;
  replaceBy("real.csv", "newer");
  EXPECT_TRUE(hasList("real.csv"));
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
  const Act same = [&] { replaceBy("t.csv", "old"); };
  EXPECT_EQ(failureWith({"fsync", "rename"}, EIO, same), "no failure");
  allow("t.csv", 0444);
  for (const Act& act : {write, same}) {
    EXPECT_TRUE(failsInChild(becomeNobody, act, "Permission denied"));
  }
  allow("t.csv", 0666);
  allow(".", 0555);
  for (const Act& act : {write, copy, same}) {
    EXPECT_TRUE(failsInChild(becomeNobody, act, "Permission denied"));
  }
  allow(".", 0777);
  EXPECT_EQ(folder.read("t.csv"), "old");
  EXPECT_EQ(folder.names(), (Names{"big", "t.csv"}));
}

TEST_F(PosixFiles, ACopyLetsInNobodyElse) {
  if (::geteuid() != 0) GTEST_SKIP() << notRoot;
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
  EXPECT_EQ(stateOf("to").st_uid, 65534U);
  EXPECT_EQ(stateOf("to").st_gid, 1234U);
  expectCopy(becomeNobody, "group", 0600);
  for (const auto& [mode, kept] : {std::pair(0664U, 0604U), std::pair(0604U, 0600U)}) {
    original("others", mode);
    expectCopy(becomeNobody, "others", kept);
  }

  original("list", 0644);
  if (!setList("list", accessListName)) GTEST_SKIP() << noLists;
  expectCopy([] {}, "list", 0640);
  EXPECT_TRUE(hasList("to") && hasList("fresh"));
  const Act withoutLists = [&] {
    systemCalls() = {.folder = folder.path(), .error = ENOTSUP, .refused = {"fsetxattr"}};
  };
  expectCopy(withoutLists, "list", 0600);
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
  for (const int error : {EPERM, EOPNOTSUPP, ENOSYS}) {
    folder.write("t.csv", "old");
    allow("t.csv", 0600);
    mark("t.csv");
    std::set<std::string> calls{"fchmod", "futimens", "fsetxattr"};
    if (error != EPERM) calls.insert({"getxattr", "fgetxattr"});
    const Act work = [&] {
      files->copy(path("from"), path("to"));
      replaceBy("t.csv", "new");
      replaceBy("t.csv", "newer");
    };
    EXPECT_EQ(failureWith(calls, error, work), "no failure") << error;
    EXPECT_EQ(folder.read("to"), "bytes");
    EXPECT_EQ(folder.read("t.csv"), "newer");
    for (const char* name : {"to", "t.csv"}) files->remove(path(name));
  }
}

TEST_F(PosixFiles, AFolderIsFlushedAndAFlushForAllFallsBackToThatOfEachFile) {
  folder.write("t.csv", "");
  const auto failureOfFlush = [&](const std::set<std::string>& calls, int error) {
    return failureWith(calls, error, [&] { files->flushAll(here); });
  };
  systemCalls() = {.folder = folder.path()};
  files->createFolder(path("folder/"));
  const auto made = std::exchange(systemCalls(), {}).made;
  EXPECT_TRUE(std::any_of(made.begin(), made.end(), [&](const SystemCalls::Call& call) {
    return call.name == "fsync" && call.path == folder.path();
  })) << "its name";
  EXPECT_EQ(failureOfFlush({"fsync", "syncfs"}, EIO), "Input/output error");
  EXPECT_EQ(failureOfFlush({"syncfs"}, ENOSYS), "no failure");
  // A folder may need no flush; its files do.
  EXPECT_EQ(failureOfFlush({"fsync", "syncfs"}, EINVAL), "Invalid argument");
  // Where the kind of disk can't be told, nor is a flush for all believed.
  EXPECT_EQ(failureOfFlush({"fstatfs", "fsync"}, EROFS), "Read-only file system");
}

TEST_F(PosixFiles, ACopyAsideReplacesNothingAlsoWhereARenameCannotTell) {
  for (const char* name : {"from", "taken"}) folder.write(name, name);
  const auto failureOfCopy = [&](const std::string& to) {
    return failureWith({"linkat", "renameat2"}, EINVAL, [&] {
      if (!files->copyAside(path("from"), path(to))) throw Failure("taken");
    });
  };
  EXPECT_EQ(failureOfCopy("free"), "no failure");
  EXPECT_EQ(failureOfCopy("taken"), "taken");
  EXPECT_EQ(folder.read("taken"), "taken");
}

TEST_F(PosixFiles, TemporaryFilesOfOtherAccountsAreLeftAlone) {
  if (::geteuid() != 0) GTEST_SKIP() << notRoot;
  const Names theirs{".t.csv.kova~1", ".copy.kova~2", ".t.csv.kova~0123456789abcdef"};
  folder.write("from", "from");
  const Act work = [&] {
    replaceBy("t.csv", "ours");
    files->copyAside(path("from"), path("copy"));
    files->removeStaleTemporaryFiles(path("."));
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
        EXPECT_EQ(stateOf(name).st_uid, 1234U);
        EXPECT_EQ(modeOf(name), mode_t{S_IFREG | 0666});
      }
      for (const char* name : {"t.csv", "copy"}) {
        EXPECT_EQ(stateOf(name).st_uid, account) << name;
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
    for (const Act& check : checks) EXPECT_EQ(failureWith({"stat"}, error, check), failure);
  }
}

}  // namespace kova::test
