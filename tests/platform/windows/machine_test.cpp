// SPDX-License-Identifier: MIT
#include <windows.h>

#include "platform/real_files.h"

namespace kova::test {

namespace fs = std::filesystem;

/// The call to the system that fails.
std::string failing;

BOOL WINAPI writeFile(HANDLE file, const void* data, DWORD size, DWORD* count, OVERLAPPED* place) {
  const auto write = reinterpret_cast<decltype(&::WriteFile)>(
      reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"kernel32"), "WriteFile")));
  const bool fails = failing == "WriteFile";
  const BOOL written = write(file, data, fails ? size / 2 : size, count, place);
  if (fails) ::SetLastError(ERROR_DISK_FULL);
  return fails ? FALSE : written;
}
BOOL WINAPI flushFileBuffers(HANDLE /*file*/) {
  ::SetLastError(ERROR_WRITE_FAULT);
  return failing == "FlushFileBuffers" ? FALSE : TRUE;
}

// The names under which the linker takes imports from here in place of the system's libraries.
extern "C" {
auto* __imp_WriteFile = &writeFile;
auto* __imp_FlushFileBuffers = &flushFileBuffers;
}

struct WindowsStarter : testing::Test {
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
    std::error_code error;
    waitUntil([&] { return fs::remove_all(folder.path(), error), !error; });
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
  for (const int number : {65001, 932, 4711}) {
    EXPECT_EQ(CodePage::windows(number).name(), "Windows-1252") << number;
  }
  EXPECT_EQ(CodePage::windows1252().capital('\xE4'), '\xC4');
}

TEST_F(RealFiles, AFullDiskLeavesTheFormerContent) {
  folder.write("t.csv", "old");
  folder.write("from", "new");
  const Act write = [&] { replaceBy("t.csv", "new"); };
  const Act copy = [&] { files->copy(path("from"), path("t.csv")); };
  for (const Act& act : {write, copy}) {
    failing = "WriteFile";
    EXPECT_EQ(failureOf(act), "No space left on device");
    failing = "FlushFileBuffers";
    EXPECT_EQ(failureOf(act), "Input/output error");
  }
  failing.clear();
  EXPECT_EQ(folder.read("t.csv"), "old");
  EXPECT_EQ(folder.names(), (Names{"from", "t.csv"}));
}

TEST_F(RealFiles, WhatAnotherProgramHoldsIsToldAndWhatIsHiddenIsNotListed) {
  const Path table = path("t.csv");
  replaceBy("t.csv", "old");
  const HANDLE held = ::CreateFileA(table.native.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
  EXPECT_EQ(failureOf([&] { replaceBy("t.csv", "new"); }), "Another program has the file open");
  ::CloseHandle(held);
  EXPECT_EQ(files->read(table), "old");
  EXPECT_EQ(files->plainFiles(here), std::vector<std::string>{"t.csv"});
  ::SetFileAttributesA(table.native.c_str(), FILE_ATTRIBUTE_HIDDEN);
  EXPECT_TRUE(files->plainFiles(here).empty());
  replaceBy("t.csv", "new");
  EXPECT_NE(::GetFileAttributesA(table.native.c_str()) & FILE_ATTRIBUTE_HIDDEN, 0U);
  ::SetFileAttributesA(table.native.c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_THROW(files->create(table), Failure);
  ::SetFileAttributesA(table.native.c_str(), FILE_ATTRIBUTE_NORMAL);
  EXPECT_EQ(files->path("C:/a/b").native, "C:\\a\\b");
  EXPECT_TRUE(files->folderExists({"C:"}));
}

}  // namespace kova::test
