// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>

#include "platform/machine.h"
#include "support/temporary_folder.h"

namespace kova::test {

namespace fs = std::filesystem;

class WindowsStarter : public ::testing::Test {
 protected:
  void SetUp() override {
    for (const char* where : {"near", "far"}) {
      fs::create_directory(folder.path(where));
      fs::copy(KOVA_RECORD, folder.path(where) + "\\record.exe");
    }
    folder.write("far/batch.bat", "");
    fs::current_path(folder.path("near"));
    ::SetEnvironmentVariableA("KOVA_RECORD", folder.path("out").c_str());
  }
  void TearDown() override {
    fs::current_path("C:\\");
    // The last program may still be on its way out of the folder.
    waitUntil([this] {
      std::error_code error;
      fs::remove_all(folder.path(), error);
      return !error;
    });
  }
  template <class Condition>
  static void waitUntil(Condition isMet) {
    constexpr int minutes = 2;
    for (int wait = 0; wait < minutes * 6000 && !isMet(); ++wait) ::Sleep(10);
  }
  static void start(std::string_view commandLine) {
    realProgramStarter(CodePage::windows1252())->start(commandLine);
  }
  /// What the started program has noted.
  std::string noted() const {
    waitUntil([this] { return folder.has("out"); });
    const std::string note = folder.read("out");
    fs::remove(folder.path("out"));
    return note;
  }

  TemporaryFolder folder;
};

TEST_F(WindowsStarter, StartsProgramsOfAbsoluteFoldersMinimisedWithTheirWords) {
  const std::string unusable = ";.;..\\near;\\near;C:near;" + folder.path("none");
  ::SetEnvironmentVariableA("PATH", (unusable + ";\"" + folder.path("far") + '"').c_str());
  start("record.exe  C:\\x y LINUX");
  EXPECT_EQ(noted(), "record.exe  C:\\x y LINUX|" + std::to_string(SW_SHOWMINIMIZED));
  start("RECORD %PATH% & $(x)");
  EXPECT_EQ(noted(), "RECORD %PATH% & $(x)|" + std::to_string(SW_SHOWMINIMIZED));
  for (const char* line : {"", "  ", ".\\record.exe a", "C:record", "missing", "record -o",
                           "record /o", "batch.bat", "batch", "record \"a", "record a\tb"}) {
    EXPECT_THROW(start(line), Failure) << line;
  }
  ::SetEnvironmentVariableA("PATH", unusable.c_str());
  EXPECT_THROW(start("record.exe"), Failure);
}

TEST(WindowsEnvironment, AValueThatTheCodePageLacksIsNotUsed) {
  const CodePage western = CodePage::windows1252();
  const CodePage central = CodePage::windows(1250);
  ::SetEnvironmentVariableW(L"FEC_HOME", L"C:\\\u0142");
  EXPECT_TRUE(realEnvironment(western)->isUnusable("FEC_HOME"));
  EXPECT_EQ(realEnvironment(western)->variable("FEC_HOME"), "");
  EXPECT_EQ(realEnvironment(central)->variable("FEC_HOME"), "C:\\\xB3");
  ::SetEnvironmentVariableW(L"FEC_HOME", nullptr);
  EXPECT_FALSE(realEnvironment(western)->isUnusable("FEC_HOME"));
  EXPECT_EQ(realEnvironment(western)->homeFolder(), "C:");
}

TEST(WindowsCodePage, IsTheSystemsOwnOrTheWesternOne) {
  EXPECT_EQ(CodePage::ofLocale().name(), "Windows-1252");
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  for (const int number : {1250, 1251, 1252, 1253, 1254, 1255, 1256, 1257, 1258}) {
    const CodePage page = CodePage::windows(number);
    EXPECT_EQ(page.name(), "Windows-" + std::to_string(number));
    EXPECT_EQ(page.fromNative(page.toNative(all)), all) << number;
  }
  for (const int number : {65001, 932, 4711}) {
    EXPECT_EQ(CodePage::windows(number).name(), "Windows-1252") << number;
  }
  EXPECT_EQ(CodePage::windows1252().capital('\xE4'), '\xC4');
}

TEST(WindowsFiles, WhatAnotherProgramHoldsIsToldAndWhatIsHiddenIsNotListed) {
  const TemporaryFolder folder;
  const CodePage page = CodePage::windows1252();
  const auto files = realFileSystem(page);
  const Path table = files->path(folder.path("t.csv"));
  replace(*files, table, "old");
  const HANDLE held = ::CreateFileA(table.native.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
  try {
    replace(*files, table, "new");
    ADD_FAILURE() << "it was replaced";
  } catch (const Failure& failure) {
    EXPECT_STREQ(failure.what(), "Another program has the file open");
  }
  ::CloseHandle(held);
  EXPECT_EQ(files->read(table), "old");
  EXPECT_EQ(files->plainFiles({folder.path()}), std::vector<std::string>{"t.csv"});
  ::SetFileAttributesA(table.native.c_str(), FILE_ATTRIBUTE_HIDDEN);
  EXPECT_TRUE(files->plainFiles({folder.path()}).empty());
  replace(*files, table, "new");
  EXPECT_NE(::GetFileAttributesA(table.native.c_str()) & FILE_ATTRIBUTE_HIDDEN, 0U);
  ::SetFileAttributesA(table.native.c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_THROW(files->create(table), Failure);
  ::SetFileAttributesA(table.native.c_str(), FILE_ATTRIBUTE_NORMAL);
  EXPECT_EQ(files->path("C:/a/b").native, "C:\\a\\b");
  EXPECT_TRUE(files->folderExists({"C:"}));
}

}  // namespace kova::test
