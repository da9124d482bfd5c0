// SPDX-License-Identifier: MIT
#include "review/backup_sets.h"

#include <gtest/gtest.h>

#include "review/overlay_files.h"
#include "support/engineer.h"
#include "tables/backup.h"

namespace kova {
namespace {

/// A project with two sets of backups, of which the younger took more than a second.
class BackupSets : public testing::Test {
 protected:
  BackupSets() {
    for (const auto& [name, content] : test::Files{{"exports.csv", "now"},
                                                   {"history.csv", "now"},
                                                   {"exports-1700000000.csv", "old"},
                                                   {"history-1700000000.csv", "old"},
                                                   {"exports-1700009000.csv", "younger"},
                                                   {"history-1700009001.csv", "younger"},
                                                   {"gone-1700009001.csv", "no file has it"}}) {
      folder.write("P/" + name, content);
    }
    clock.now = 1700010000;
  }

  std::vector<BackupSet> sets() const { return backupSets(*files, Path{folder.path("P")}); }
  Restored bringBack(FileSystem& disk) {
    return restore({disk, environment, clock, programs}, folder.path("P"), sets().back());
  }

  test::TemporaryFolder folder;
  CodePage page = CodePage::windows1252();
  std::unique_ptr<FileSystem> files = realFileSystem(page);
  test::FakeEnvironment environment;
  test::FakeClock clock;
  test::RecordingStarter programs;
};

TEST_F(BackupSets, AreWhatOneWalkHasCopied) {
  std::string shown;
  for (const BackupSet& set : sets()) {
    shown += std::to_string(set.first) + '-' + std::to_string(set.last) + ":";
    for (const BackedUpFile& file : set.files) {
      shown += ' ' + file.name + '=' + file.backup + '=' + std::to_string(file.bytes);
    }
    shown += '\n';
  }
  EXPECT_EQ(shown,
            "1700009000-1700009001: exports.csv=exports-1700009000.csv=7 "
            "history.csv=history-1700009001.csv=7\n"
            "1700000000-1700000000: exports.csv=exports-1700000000.csv=3 "
            "history.csv=history-1700000000.csv=3\n");
  EXPECT_EQ(findBackupSet(sets(), 1700009001)->first, 1700009000);
  EXPECT_FALSE(findBackupSet(sets(), 1700009002));
  const auto held = filesOf(*files, Path{folder.path("P")}, sets().front());
  EXPECT_EQ(held, (ProjectFiles{{"exports.csv", "younger"}, {"history.csv", "younger"}}));
}

TEST_F(BackupSets, AreRestoredAheadOfWhichWhatIsThereIsBackedUp) {
  const Restored restored = bringBack(*files);
  EXPECT_EQ(restored.failure, "");
  EXPECT_EQ(restored.files, (std::vector<std::string>{"exports.csv", "history.csv"}));
  EXPECT_EQ(restored.kept,
            (std::vector<std::string>{"exports-1700009999.csv", "history-1700009999.csv"}));
  EXPECT_EQ(folder.read("P/exports.csv") + folder.read("P/history.csv"), "oldold");
  EXPECT_EQ(folder.read("P/exports-1700009999.csv"), "now");
  EXPECT_TRUE(bringBack(*files).kept.empty()) << "nothing to do";
}

/// A disk that takes no content for one file.
struct StubbornFiles : OverlayFiles {
  StubbornFiles(const FileSystem& below, std::string closed)
      : OverlayFiles(below), closed_(std::move(closed)) {}
  std::unique_ptr<OutputFile> create(const Path& file) override {
    if (file.leaf() == closed_) throw Failure("No space left");
    return OverlayFiles::create(file);
  }
  std::string closed_;
};

TEST_F(BackupSets, TellHowFarARestoringCame) {
  StubbornFiles closed(*files, "exports.csv");
  EXPECT_EQ(bringBack(closed).missing, (std::vector<std::string>{"exports.csv", "history.csv"}));
  StubbornFiles disk(*files, "history.csv");
  const Restored restored = bringBack(disk);
  EXPECT_EQ(restored.failure, "history.csv: No space left");
  EXPECT_EQ(restored.files, std::vector<std::string>{"exports.csv"});
  EXPECT_EQ(restored.missing, std::vector<std::string>{"history.csv"});
  EXPECT_EQ(folder.read("P/exports.csv"), "now") << "an overlay writes nothing";
}

/// A disk on which another wizard backs up as well, until one file can't be copied.
struct SharedFiles : OverlayFiles {
  using OverlayFiles::OverlayFiles;
  void copy(const Path& from, const Path& to) override {
    if (from.leaf() == "history.csv") throw Failure("No space left");
    OverlayFiles::copy(from, to);
    if (from.leaf() == "exports.csv") another = to;
    if (from.leaf() != "exports.csv") replace(*this, another, "of another wizard");
  }
  Path another;
};

TEST_F(BackupSets, OfAnotherWizardStayWhereAReadingFails) {
  SharedFiles disk(*files);
  const Path project{folder.path("P")};
  EXPECT_THROW(backupExistingFiles(disk, clock, project, {}), BackupFailure);
  EXPECT_EQ(disk.written(), std::vector<Path>{project / "exports-1700010000.csv"});
}

TEST(BackupTimes, AreReadByPeople) {
  EXPECT_EQ(ageText(1000, 1001), "1 second");
  EXPECT_EQ(ageText(1000, 1000 + 7200), "2 hours");
  EXPECT_EQ(ageText(1000, 1000 + 86400), "1 day");
  EXPECT_EQ(ageText(1000, 0), "0 seconds");
}

}  // namespace
}  // namespace kova
