// SPDX-License-Identifier: MIT
// Unsaved work outlives a program that is killed or closed, and is restored at the real window.
#include <QLineEdit>
#include <QPushButton>
#include <ctime>
#include <fstream>

#include "core/status.h"
#include "tables/project_on_disk.h"
#include "window/desk.h"

namespace kova::test {
namespace {

namespace fs = std::filesystem;

constexpr int rowWithNames = 6;

/// One run of the program.
struct Session {
  Session(const std::string& home, const CodePage& page)
      : drafts(Path{home} / ".state", page), engineer(home), desk(engineer, page, &drafts) {
    settle();
  }
  Wizard& wizard() { return engineer.program.wizard; }
  std::string status() { return statusText(wizard()); }
  ReviewGroup onlyDraft() const { return desk.view.drafts()->groups().at(0); }
  void open() {
    desk.type("MAGNET");
    settle();
  }
  void removeLine(int row) {
    desk.click(desk.list(), desk.placeOfLine(row));
    settle();
    desk.key("Alt+R");
    settle();
  }

  DraftFolder drafts;
  Engineer engineer;
  Desk desk;
};

struct Drafts : testing::Test {
  Drafts() { fs::copy(KOVA_EXAMPLE, home.path("MAGNET")); }
  std::vector<fs::path> files(const std::string& ending = ".json") const {
    std::vector<fs::path> found;
    if (!fs::exists(folder)) return found;
    for (const auto& entry : fs::directory_iterator(folder)) {
      if (entry.path().string().ends_with(ending)) found.push_back(entry.path());
    }
    return found;
  }
  std::unique_ptr<Session> begin() { return std::make_unique<Session>(home.path(), page); }
  /// What the program would have left if it had been killed after a change.
  void leaveDraft() {
    auto session = begin();
    session->open();
    session->desk.click(session->desk.list(), session->desk.placeOfLine(rowWithNames));
    session->removeLine(5);
    session->desk.write("PropertyDescription", "typed, not added");
    settle();
    const auto isKept = [&] {
      return !files().empty() && home.read(files()[0]).find("not added") != std::string::npos;
    };
    ASSERT_TRUE(QTest::qWaitFor(isKept, 20000));
    EXPECT_TRUE(begin()->status().find("Unsaved") == std::string::npos) << "its wizard runs";
  }

  const CodePage page = CodePage::windows1252();
  TemporaryFolder home;
  const fs::path folder = home.path(".state/kova-setup-wizard");
};

TEST_F(Drafts, WhatWasTypedOutlivesAKillAndIsRestoredAgainstTheDiskAsItIs) {
  leaveDraft();
  EXPECT_EQ(fs::status(folder).permissions(), fs::perms::owner_all);
  EXPECT_EQ(fs::status(files().front()).permissions(),
            fs::perms::owner_read | fs::perms::owner_write);
  // A colleague finishes the same project in between.
  {
    Engineer colleague(home.path());
    colleague.start();
    Form1& form = colleague.program.wizard.form;
    type(form.ExportName, "MAGNET");
    form.PropertyList.select(0);
    form.RemoveProperty.click();
    form.Command1.click();
  }
  auto session = begin();
  EXPECT_EQ(
      session->status(),
      "Unsaved work on MAGNET from 22:13 (5 device names, 1 removal) is kept: Review restores "
      "it.");
  EXPECT_EQ(session->engineer.rows().properties, 0) << "nothing is restored by itself";
  const ReviewGroup draft = session->onlyDraft();
  EXPECT_EQ(draft.name, "Unsaved work on MAGNET from 22:13");
  ASSERT_EQ(draft.lines.size(), 3U);
  EXPECT_EQ(draft.lines[0].texts.front(), "exports.csv");
  EXPECT_EQ(draft.lines[0].below.size(), 2U) << "the colleague's row is back, the removed one not";

  session->desk.view.drafts()->restore(draft.key);
  settle();
  EXPECT_EQ(session->engineer.rows().properties, 7);
  const auto& row = session->wizard().state.project.exportTable[rowWithNames - 1];
  EXPECT_EQ(row.devices.size(), 5U) << "left out of the draft, as its file has them";
  EXPECT_EQ(session->wizard().form.PropertyDescription.text(), "typed, not added");
  EXPECT_EQ(session->desk.view.undo().history().steps().back().name,
            "Restore unsaved work on MAGNET");
  EXPECT_NE(session->status().find("2 "), std::string::npos) << session->status();
  session->desk.key("Alt+1");
  EXPECT_EQ(session->engineer.rows().properties, 0);
  session->desk.key("Alt+2");
  EXPECT_EQ(session->engineer.rows().properties, 7);
  untilTheEnd(session->desk, [&] { session->desk.click("Command1"); });
  EXPECT_TRUE(files("").empty()) << "Done came to its end";
  EXPECT_EQ(begin()->status().find("Unsaved"), std::string::npos);
}

TEST_F(Drafts, ClosingTheWindowKeepsThemAndNothingUnwrittenLeavesNone) {
  {
    auto session = begin();
    session->open();
    session->removeLine(5);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !files().empty(); }, 20000));
    session->desk.key("Alt+1");
    settle();
    EXPECT_TRUE(files("").empty()) << "all of it is taken back";
    session->desk.view.close();
    EXPECT_TRUE(files("").empty());
  }
  {
    auto session = begin();
    session->open();
    session->desk.write("PropertyName", "LATER");
    session->desk.view.close();
  }
  auto session = begin();
  EXPECT_EQ(session->status(),
            "Unsaved work on MAGNET from 22:13 (5 device names) is kept: Review restores it.");
  const std::string key = session->onlyDraft().key;
  session->desk.answer("N");
  session->desk.view.drafts()->confirmAndRemove(key);
  EXPECT_EQ(files().size(), 1U);
  session->desk.answer("Y");
  session->desk.view.drafts()->confirmAndRemove(key);
  EXPECT_TRUE(files("").empty());
}

TEST_F(Drafts, TheNewestIsOfferedFirstAndNoneIsKeptForEver) {
  for (const std::int32_t time : {1700000500, 1700000000}) {
    auto session = begin();
    session->engineer.clock.now = time;
    session->desk.click("vbProject");
    session->desk.view.close();
  }
  auto session = begin();
  EXPECT_EQ(session->status(),
            "Unsaved work on a new server from 22:21 (texts in the form) and 1 older draft are "
            "kept: Review restores them.");
  const DraftSummary newest = session->drafts.kept(0).at(0);
  EXPECT_EQ(draftText(newest, 1700100000),
            "a new server from 2023-11-14 22:21 (texts in the form)");
  session->desk.answer("N");
  session->desk.view.drafts()->confirmAndRemoveAll();
  EXPECT_EQ(files().size(), 2U);
  constexpr std::int32_t month = 31 * 24 * 60 * 60;
  const auto now = static_cast<std::int32_t>(std::time(nullptr));
  EXPECT_TRUE(session->drafts.kept(now + month).empty());
  EXPECT_TRUE(files("").empty());
}

TEST_F(Drafts, OfAListThatIsGoneFromTheDiskRestoresNone) {
  leaveDraft();
  fs::remove(home.path("MAGNET/FIELD-names.csv"));
  auto session = begin();
  session->desk.view.drafts()->restore(session->onlyDraft().key);
  const auto& row = session->wizard().state.project.exportTable[rowWithNames - 1];
  EXPECT_EQ(row.propertyName, "FIELD");
  EXPECT_FALSE(row.hasDeviceList) << "or Done would write names of its own";
  session->desk.view.close();
}

TEST_F(Drafts, TheNewestCompleteOneIsRestoredAndHostileFilesAreNot) {
  {
    auto session = begin();
    session->open();
    for (const std::string file : {".json", ".former.json", ".earlier.json"}) {
      session->removeLine(5);
      session->engineer.clock.now += 31;
      ASSERT_TRUE(QTest::qWaitFor([&] { return !files(file).empty(); }, 20000)) << file;
    }
  }
  std::ofstream(files(".former.json").front(), std::ios::trunc).put('{');
  const std::string key = files(".lock").front().stem();
  fs::resize_file(folder / (key + ".json"), 0);
  EXPECT_NE(begin()->status().find("1 removal"), std::string::npos) << "after a loss of power";
  const fs::path earlier = files(".earlier.json").front();
  const std::string content = home.read(earlier);
  std::string other = content;
  other[other.size() / 2] ^= 1;
  std::ofstream(earlier, std::ios::trunc) << other;
  EXPECT_EQ(begin()->status().find("Unsaved"), std::string::npos);
  {
    auto session = begin();
    EXPECT_EQ(session->onlyDraft().lines.front().texts.front(), "The draft is not complete");
    QWidget& review = session->desk.openReview();
    session->desk.key("Alt+B");
    for (const QPushButton* button : review.findChildren<QPushButton*>()) {
      EXPECT_FALSE(button->text() == "Res&tore draft" && button->isEnabled());
    }
  }
  for (const fs::path& file : files("")) fs::remove(file);

  std::ofstream(home.path("elsewhere.json")) << content;
  fs::create_symlink(home.path("elsewhere.json"), folder / "0123456789abcdef.json");
  fs::create_directory(folder / "0123456789abcdee.json");
  std::ofstream(folder / "notes.json") << content;
  fs::permissions(folder, fs::perms::all);
  EXPECT_TRUE(begin()->desk.view.drafts()->groups().empty()) << "links are not followed";
  EXPECT_TRUE(fs::exists(folder / "notes.json"));
  EXPECT_EQ(fs::status(folder).permissions(), fs::perms::owner_all);
}

TEST_F(Drafts, AStateFolderThatCannotBeUsedIsReportedOnceAndNothingElseSuffers) {
  fs::create_directories(folder.parent_path());
  std::ofstream(folder) << "a file";
  auto session = begin();
  EXPECT_EQ(session->status(), "Unsaved work can't be kept: Not a directory.");
  session->open();
  session->removeLine(5);
  QTest::qWait(1200);
  EXPECT_EQ(session->status(),
            "Property STATE removed. 5 device names, 1 removal not yet written.");
  untilTheEnd(session->desk, [&] { session->desk.click("Command1"); });
}

TEST_F(Drafts, ADoneThatWasInterruptedSaysWhatIsMissing) {
  {
    auto session = begin();
    session->open();
    session->removeLine(5);
    session->removeLine(3);
    fs::remove(home.path("MAGNET/history.csv"));
    fs::create_directory(home.path("MAGNET/history.csv"));
    session->desk.answer("Return");
    session->desk.click("Command1");
    EXPECT_NE(session->desk.message.find("Could not write history.csv"), std::string::npos);
  }
  fs::remove(home.path("MAGNET/history.csv"));
  EXPECT_EQ(begin()->status().find("Done was interrupted: exports.csv, almwatch.csv were written, "
                                   "history.csv, devices.csv were not."),
            0U)
      << begin()->status();
}

}  // namespace
}  // namespace kova::test
