// SPDX-License-Identifier: MIT
#include "review/overlay_files.h"

#include <gtest/gtest.h>

#include "platform/machine.h"
#include "support/temporary_folder.h"

namespace kova {
namespace {

using Names = std::vector<std::string>;

TEST(OverlayFiles, RememberWhatIsWrittenAndLeaveTheDiskAlone) {
  const test::TemporaryFolder disk;
  disk.write("a", "disk");
  disk.write("b", "disk");
  const CodePage page = CodePage::windows1252();
  const auto below = realFileSystem(page);
  OverlayFiles files(*below);
  const Path folder = files.path(disk.path());
  EXPECT_EQ(files.state(folder / "a"), below->state(folder / "a"));
  replace(files, folder / "a", "here");
  const auto first = files.state(folder / "a");
  replace(files, folder / "a", "here");
  EXPECT_NE(files.state(folder / "a"), first) << "somebody has written in between";
  files.create(folder / "c")->write("never closed");
  replace(files, folder / ".hidden", "not listed");
  EXPECT_TRUE(files.copyAside(folder / "a", folder / "d"));
  EXPECT_FALSE(files.copyAside(folder / "b", folder / "d"));
  files.remove(folder / "b");
  EXPECT_EQ(files.plainFiles(folder), (Names{"a", "d"}));
  EXPECT_EQ(files.read(folder / "d"), "here");
  EXPECT_FALSE(files.fileExists(folder / "b"));
  EXPECT_THROW(files.read(folder / "b"), Failure);
  EXPECT_EQ(files.removed(), std::vector<Path>{folder / "b"});
  EXPECT_EQ(files.written(), (std::vector<Path>{folder / "a", folder / ".hidden", folder / "d"}));

  const Path inner = folder / "new";
  EXPECT_THROW(files.create(inner / "x"), Failure);
  files.createFolder(Path{inner.native + pathSeparator});
  EXPECT_THROW(files.createFolder(inner), Failure);
  replace(files, inner / "x", "1");
  EXPECT_EQ(files.plainFiles(inner), Names{"x"});
  EXPECT_THROW(files.create(inner), Failure);
  EXPECT_THROW(files.create(inner / std::string(300, 'x')), Failure);
  EXPECT_EQ(disk.names(), (std::set<std::string>{"a", "b"}));
  EXPECT_EQ(disk.read("a"), "disk");
}

}  // namespace
}  // namespace kova
