// SPDX-License-Identifier: MIT
// What every machine's file system promises.
#include <filesystem>
#include <regex>

#include "platform/real_files.h"

namespace kova::test {

namespace fs = std::filesystem;

TEST_F(RealFiles, AReplacementIsWholeOrNotThere) {
  replaceBy("t.csv", "old");
  { files->create(path("t.csv"))->write("given up"); }
  EXPECT_EQ(files->read(path("t.csv")), "old");
  EXPECT_EQ(folder.names(), Names{"t.csv"});
  const auto first = files->create(path("t.csv"));
  first->write("of the one wizard");
  first->flush();
  replaceBy("t.csv", "of the other");
  first->close();
  EXPECT_EQ(folder.read("t.csv"), "of the one wizard");
  replaceBy("t.csv", std::string(300000, '\xB0'));
  EXPECT_EQ(folder.read("t.csv"), std::string(300000, '\xB0'));
  EXPECT_EQ(folder.names(), Names{"t.csv"});
}

TEST_F(RealFiles, AFileThatHoldsTheBytesAlreadyStays) {
  const std::string same(40000, 'a');
  folder.write("t.csv", same);
  fs::last_write_time(folder.path("t.csv"), fs::file_time_type(std::chrono::hours(100)));
  const auto timestamp = files->state(path("t.csv"));
  replaceBy("t.csv", same);
  EXPECT_EQ(files->state(path("t.csv")), timestamp);
  EXPECT_EQ(folder.names(), Names{"t.csv"});
  for (const std::string& other : {same.substr(1) + 'b', same.substr(1), same}) {
    const auto output = files->create(path("t.csv"));
    output->write(other.substr(0, 20000));
    output->flush();
    output->write(other.substr(20000));
    output->close();
    EXPECT_EQ(folder.read("t.csv"), other);
  }
  const auto output = files->create(path("t.csv"));
  output->write("of the wizard");
  folder.write("t.csv", "of the wizard");
  output->flush();
  folder.write("t.csv", "somebody's");
  output->close();
  EXPECT_EQ(folder.read("t.csv"), "of the wizard");
}

TEST_F(RealFiles, ACopyKeepsBytesTimeAndProtection) {
  for (const std::size_t size : {0U, 1U, 65536U, 300000U}) {
    folder.write("from", std::string(size, '\x95'));
    fs::last_write_time(folder.path("from"), fs::file_time_type(std::chrono::microseconds(7)));
    fs::permissions(folder.path("from"), fs::perms{0444});
    for (int time = 0; time < 2; ++time) files->copy(path("from"), path("to"));
    EXPECT_EQ(folder.read("to"), std::string(size, '\x95'));
    EXPECT_EQ(files->state(path("to"))->modified, files->state(path("from"))->modified);
    EXPECT_EQ(fs::status(folder.path("to")).permissions(), fs::perms{0444});
    EXPECT_FALSE(files->copyAside(path("from"), path("to")));
    EXPECT_TRUE(files->copyAside(path("from"), path("aside")));
    files->flushAll(here);
    for (const char* name : {"from", "to", "aside"}) files->remove(path(name));
    EXPECT_EQ(folder.names(), Names{});
  }
}

TEST_F(RealFiles, WhatIsNoPlainFileIsRefusedAndNotListed) {
  for (const char* name : {"b.csv", "B2", "\u00E9", ".hidden"}) replaceBy(page.fromUtf8(name), "");
  files->createFolder(path("folder"));
  EXPECT_EQ(failureOf([&] { files->createFolder(path("folder")); }), "File exists");
  EXPECT_EQ(failureOf([&] { files->read(path("folder")); }), "Is a directory");
  EXPECT_EQ(failureOf([&] { replaceBy("folder", ""); }), "Is a directory");
  EXPECT_EQ(failureOf([&] { files->read(path("none")); }), "No such file or directory");
  EXPECT_EQ(failureOf([&] { replaceBy("none/file", ""); }), "No such file or directory");
  EXPECT_EQ(failureOf([&] { files->flushAll(path("none")); }), "No such file or directory");
  EXPECT_EQ(files->plainFiles(here), (std::vector<std::string>{"B2", "b.csv", "\u00E9"}));
  EXPECT_TRUE(files->folderExists(path("folder")) && !files->fileExists(path("folder")));
  EXPECT_TRUE(files->fileExists(path("b.csv")) && !files->state(path("folder")));
  for (const Path& absent : {path("none"), path("none") / "x", path("b.csv") / "x"}) {
    EXPECT_FALSE(files->fileExists(absent) || files->folderExists(absent) || files->state(absent));
  }
  EXPECT_THROW(files->path(""), Failure);
  EXPECT_THROW(files->path(std::string_view("a\0b", 3)), Failure);
  fs::resize_file(folder.path("b.csv"), largestFile);
  EXPECT_EQ(files->read(path("b.csv")).size(), largestFile);
  fs::resize_file(folder.path("b.csv"), largestFile + 1);
  EXPECT_EQ(failureOf([&] { files->read(path("b.csv")); }), "The file is larger than 64 MiB");
}

TEST_F(RealFiles, TemporaryFilesHaveNewNamesAndAreRemovedOnceNobodyHoldsThem) {
  Names kept{".x.kova~9",
             "x.kova~1",
             ".kova~1",
             "x.kova~0123456789abcdef",
             ".x.kova~0123456789abcdeF",
             ".t.csv~1",
             ".x.kova~123456789abcdef"};
  for (const auto& name : kept) folder.write(name, "not a temporary file");
  files->createFolder(path(".folder.kova~1"));
  for (const char* name : {".t.csv.kova~1", ".t.csv.kova~0123456789abcdef", ".x.kova~8"}) {
    folder.write(name, "left");
  }
  folder.write("precious", "kept");
  fs::create_hard_link(folder.path("precious"), folder.path(".t.csv.kova~2"));
  const Names before = folder.names();
  const std::array writers{files->create(path("t.csv")), files->create(path("t.csv"))};
  Names made = folder.names();
  for (const auto& name : before) made.erase(name);
  EXPECT_EQ(made.size(), writers.size());
  for (const auto& name : made) {
    EXPECT_TRUE(std::regex_match(name, std::regex("\\.t\\.csv\\.kova~[0-9a-f]{16}"))) << name;
  }
  files->removeStaleTemporaryFiles(here);
  kept.insert({".folder.kova~1", ".t.csv.kova~2", "precious"});
  kept.merge(made);
  EXPECT_EQ(folder.names(), kept);
}

TEST_F(RealFiles, AFolderTellsWhatItCanHoldAndWhoHoldsIt) {
  EXPECT_TRUE(files->nameFits(here, std::string(255, 'x')));
  EXPECT_FALSE(files->nameFits(here, std::string(256, 'x')));
  EXPECT_FALSE(files->nameFits(here, ""));
  folder.write("small", "");
  EXPECT_EQ(files->ignoresCase(here), folder.has("SMALL"));
  auto lock = files->lock(here);
  EXPECT_EQ(files->lock(here), nullptr);
  lock.reset();
  EXPECT_NE(files->lock(here), nullptr);
  EXPECT_NE(files->lock(path("none")), nullptr) << "nobody holds it";
  EXPECT_EQ(folder.names(), Names{"small"});
}

TEST_F(RealFiles, LongPathsAreWrittenAndRead) {
  const std::string longName(150, 'd');
  Path deep = here;
  for (int level = 0; level < 4; ++level) {
    deep = deep / longName;
    files->createFolder(deep);
  }
  replace(*files, deep / std::string(255, 'f'), "deep");
  files->copy(deep / std::string(255, 'f'), deep / "copy");
  EXPECT_EQ(files->read(deep / "copy"), "deep");
  EXPECT_EQ(files->plainFiles(deep).size(), 2U);
  for (const auto& name : files->plainFiles(deep)) files->remove(deep / name);
  EXPECT_EQ(files->plainFiles(deep).size(), 0U);
  // Within reach of what removes the folder.
  for (Path end = here; fs::exists((end / longName).native); end = end / "d") {
    fs::rename((end / longName).native, (end / "d").native);
  }
}

TEST(CodePages, KeepEveryByteApart) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  for (int number = 1250; number <= 1258; ++number) {
    const CodePage page = CodePage::windows(number);
    EXPECT_EQ(page.name(), "Windows-" + std::to_string(number));
    EXPECT_EQ(page.fromNative(page.toNative(all)), all) << number;
  }
}

TEST(Names, ThatLeadElsewhereNameNoPlainFile) {
  const auto expect = [](bool plain, std::initializer_list<std::string_view> texts) {
    for (const auto text : texts) EXPECT_EQ(namesPlainFile(text), plain) << text;
  };
  using namespace std::string_view_literals;
  expect(true, {"exports.csv", "CONS", "COMA", "COM10", "a.CON", ".kova", "a b", "\xB0"});
  expect(false, {"", ".", "..", "../x", "a/b", "/", "a\0b"sv});
  const bool hasDrives = pathSeparator == '\\';
  expect(!hasDrives, {"a\\b", "C:x", "x:stream", "con", "CON.csv", "nul .txt", "Com1", "LPT9.a.b",
                      "CONIN$", "x.", "x "});
  EXPECT_EQ(faultOfName("../x"), "/");
}

}  // namespace kova::test
