// SPDX-License-Identifier: MIT
// What a loss of power may take: the order in which Done writes, flushes and renames, as its system
// calls tell. system_call_faults.cpp, which is linked to this program, records them.
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <sstream>
#include <vector>

#include "platform/posix.h"
#include "support/temporary_folder.h"
#include "wizard/wiring.h"

namespace kova::test {
namespace {

/// The words of one recorded line.
using Call = std::vector<std::string>;

Call wordsOf(const std::string& line) {
  Call words;
  std::istringstream rest(line);
  for (std::string word; std::getline(rest, word, '\t');) words.push_back(word);
  return words;
}

/// The calls that `act` makes on what lies in `folder`.
std::vector<Call> callsOf(const TemporaryFolder& folder, const std::function<void()>& act) {
  const TemporaryFolder aside;
  ::setenv("FAULT_FOLDER", folder.path().c_str(), 1);
  ::setenv("FAULT_RECORD", aside.path("record").c_str(), 1);
  act();
  ::unsetenv("FAULT_FOLDER");
  ::unsetenv("FAULT_RECORD");
  std::vector<Call> calls;
  std::istringstream lines(aside.read("record"));
  for (std::string line; std::getline(lines, line);) calls.push_back(wordsOf(line));
  return calls;
}

std::string folderOf(const std::string& path) {
  return path.substr(0, path.rfind('/'));
}

/// What the calls so far have left in memory: bytes of files, and names in folders.
struct Disk {
  std::map<std::string, std::string> opened;  ///< paths by number
  std::set<std::string> unflushed;
  std::set<std::string> replaced;

  void take(const Call& call) {
    const std::string& kind = call[0];
    if (kind == "open") opened[call[1]] = call[3].ends_with('/') ? folderOf(call[3]) : call[3];
    if (kind == "write" || kind == "ftruncate") unflushed.insert(opened[call[1]]);
    if (kind == "fsync") unflushed.erase(opened[call[1]]);
    if (kind == "rename") rename(call[1], call[2]);
  }
  void rename(const std::string& from, const std::string& to) {
    EXPECT_FALSE(unflushed.contains(from)) << to << " is replaced by bytes that may be lost";
    unflushed.insert(folderOf(to));
    replaced.insert(to);
  }
};

TEST(FlushOrder, DoneFlushesEachTableAheadOfItsNameAndTheNamesInTheEnd) {
  const TemporaryFolder home;
  std::filesystem::copy(KOVA_EXAMPLE, home.path("MAGNET"));
  std::filesystem::create_directory(home.path("fec"));
  ::setenv("HOMEDRIVE", home.path().c_str(), 1);
  ::setenv("FEC_HOME", home.path("fec").c_str(), 1);
  const CodePage page = CodePage::windows1252();
  const Machine machine = posixMachine(page);
  SetupWizard setup(machine.platform(), [](const Message&) { return Answer::yes; });
  setup.start();
  setup.wizard.form.ExportName.setText("MAGNET");
  setup.wizard.form.NumDevices.setText("3");

  const auto calls = callsOf(home, [&] { setup.wizard.form.Command1.click(); });

  Disk disk;
  for (const Call& call : calls) disk.take(call);
  EXPECT_TRUE(disk.replaced.contains(home.path("MAGNET/exports.csv")));
  EXPECT_TRUE(disk.replaced.contains(home.path("fec/MAGEQM/exports.csv")));
  EXPECT_FALSE(disk.unflushed.contains(home.path("MAGNET")));
}

}  // namespace
}  // namespace kova::test
