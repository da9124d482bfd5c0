// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <functional>

#include "platform/posix.h"
#include "support/temporary_folder.h"

namespace kova::test {

using Names = std::set<std::string>;
using Act = std::function<void()>;

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
  std::unique_ptr<FileSystem> files = posixFileSystem(page);
};

TEST_F(PosixFiles, ReplaceKeepsPermissionsAndLinks) {
  folder.write("real.csv", "old");
  allow("real.csv", 0664);
  link("real.csv", "link.csv");
  replaceBy("link.csv", "new");
  EXPECT_EQ(folder.read("real.csv"), "new");
  EXPECT_EQ(modeOf("real.csv"), mode_t{S_IFREG | 0664});
  const mode_t mask = ::umask(0027);
  replace(*posixFileSystem(page), path("fresh.csv"), "");
  ::umask(mask);
  EXPECT_EQ(modeOf("fresh.csv"), mode_t{S_IFREG | 0640});
  EXPECT_TRUE(S_ISLNK(modeOf("link.csv")));
  EXPECT_EQ(folder.names(), (Names{"fresh.csv", "link.csv", "real.csv"}));
}

TEST_F(PosixFiles, ReplaceKeepsTheAccessList) {
  // Version 2; of owner, user 65534, group, mask and others the kind with the rights, the account.
  constexpr std::array<std::uint32_t, 11> list{2,   0x60001, ~0U, 0x40002, 65534, 0x40004,
                                               ~0U, 0x40010, ~0U, 0x20,    ~0U};
  constexpr const char* attribute = "system.posix_acl_access";
  folder.write("t.csv", "old");
  const std::string name = folder.path("t.csv");
  if (::setxattr(name.c_str(), attribute, list.data(), sizeof list, 0) != 0) {
    GTEST_SKIP() << "temporary files have no access lists here: " << std::strerror(errno);
  }

  replaceBy("t.csv", "new");

  std::array<std::uint32_t, list.size()> kept{};
  ::getxattr(name.c_str(), attribute, kept.data(), sizeof kept);
  EXPECT_EQ(kept, list);
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

TEST_F(PosixFiles, WhatIsNoPlainFileIsRefusedAtOnceAndNotListed) {
  ::mkfifo(folder.path("pipe").c_str(), 0666);
  std::filesystem::create_directory(folder.path("folder"));
  link("nowhere", "dangling");
  link("folder", "folderlink");
  const auto refused = [&](const std::string& name, const char* read, const char* create) {
    EXPECT_EQ(failureOf([&] { files->read(path(name)); }), read) << name;
    EXPECT_EQ(failureOf([&] { replaceBy(name, "x"); }), create) << name;
  };
  refused("pipe", "Not a plain file", "Not a plain file");
  refused("folder", "Is a directory", "Is a directory");
  refused("dangling", "No such file or directory", "The link points to a file that does not exist");
  refused("none/file", "No such file or directory", "No such file or directory");
  for (const char* name : {"b.csv", "B", "a\xFF", ".hidden"}) folder.write(name, "");
  link("B", "link");
  EXPECT_EQ(files->plainFiles({folder.path()}),
            (std::vector<std::string>{"B", "a\xFF", "b.csv", "link"}));
  EXPECT_EQ(files->path("\xB0").native, "\u00B0");
  EXPECT_THROW(files->path(""), Failure);
  EXPECT_THROW(files->path(std::string_view("a\0b", 3)), Failure);
}

TEST_F(PosixFiles, AFailureLeavesTheFormerContent) {
  folder.write("t.csv", "old");
  folder.write("big", std::string(100000, 'x'));
  const auto limit = [] {
    const rlimit size{4096, 4096};
    ::setrlimit(RLIMIT_FSIZE, &size);
  };
  const auto becomeNobody = [] {
    if (::geteuid() == 0 && ::setuid(65534) != 0) ::_exit(2);
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
  { files->create(path("t.csv"))->write("given up"); }
  EXPECT_EQ(folder.read("t.csv"), "old");
  EXPECT_EQ(folder.names(), (Names{"big", "t.csv"}));
}

TEST_F(PosixFiles, LeftoversAreUsedAgainAndLocksRespected) {
  for (const char* name : {".t.csv.kova~1", ".t.csv.kova~2"}) folder.write(name, "left by a killed run");
  replaceBy("t.csv", "a");
  EXPECT_EQ(folder.read("t.csv"), "a");
  EXPECT_EQ(folder.names(), Names{"t.csv"});
  const auto other = files->create(path("t.csv"));
  other->write("of the other wizard");
  replaceBy("t.csv", "b");
  EXPECT_EQ(folder.read("t.csv"), "b");
  other->close();
  EXPECT_EQ(folder.read("t.csv"), "of the other wizard");
  // A hidden name that leads to another file is not written through.
  folder.write("precious", "kept");
  std::filesystem::create_hard_link(folder.path("precious"), folder.path(".t.csv.kova~1"));
  link("precious", ".t.csv.kova~2");
  replaceBy("t.csv", "c");
  EXPECT_EQ(folder.read("precious"), "kept");
  EXPECT_EQ(folder.read("t.csv"), "c");
  std::vector<std::unique_ptr<OutputFile>> writers;
  const Act ninth = [&] {
    while (writers.size() < 9) writers.push_back(files->create(path("u.csv")));
  };
  EXPECT_EQ(failureOf(ninth), "Too many other programs are writing the file");
}

TEST_F(PosixFiles, CopyKeepsBytesModeAndTimeAndReplacesALink) {
  folder.write("precious", "kept");
  for (const std::size_t size : {0U, 1U, 65536U, 300000U}) {
    folder.write("from", std::string(size, '\x95'));
    allow("from", 0440);
    const std::array<timespec, 2> times{{{1000, 5}, {2000, 7}}};
    ::utimensat(AT_FDCWD, folder.path("from").c_str(), times.data(), 0);
    link("precious", "to");
    files->copy(path("from"), path("to"));
    EXPECT_EQ(folder.read("to"), std::string(size, '\x95'));
    EXPECT_EQ(modeOf("to"), mode_t{S_IFREG | 0440});
    EXPECT_EQ(files->stamp(path("to"))->modified, 2'000'000'000'007);
    for (const char* name : {"from", "to"}) files->remove(path(name));
    EXPECT_EQ(folder.read("precious"), "kept");
    EXPECT_EQ(folder.names(), Names{"precious"});
  }
}

}  // namespace kova::test
