// SPDX-License-Identifier: MIT
#include "tables/backup.h"

#include <gtest/gtest.h>

#include <random>
#include <regex>

#include "platform/posix.h"
#include "support/temporary_folder.h"

namespace kova::test {

constexpr std::int32_t now = 1'700'000'000;

struct FixedClock final : Clock {
  std::int32_t unixTime() const override { return now; }
};

TEST(Backup, Verdicts) {
  const auto expect = [](FileVerdict verdict, std::initializer_list<std::string_view> names) {
    for (const auto name : names) EXPECT_EQ(classify(name, now), verdict) << name;
  };
  expect(FileVerdict::inUse, {"exports.csv", "devices.csv", "MYSRV-devices.csv", "V-names.csv",
                              "A-B.csv", "X-Names.csv", "a.b-1699855999.csv", "1699855999.csv",
                              "x-1e9.csv", "channel-12.csv", "x-99999999", "", "x-2147483648",
                              "x-1699855999a.csv", "x- 1699855999", "x-00000000001699855999"});
  expect(FileVerdict::backupKept,
         {"exports-1699856000.csv", "V-names-1699856000.csv", "x-2147483647"});
  expect(FileVerdict::backupDeleted,
         {"exports-1699855999.csv", "devices-1699855999.csv", "MYSRV-devices-1699855999.csv",
          "A-B-1699855999.csv", "a-1699855999.b.csv", "NOTES-1699855999", "x-100000000",
          "x--169985599", "-1699855999", "prope-V-1699855999"});
  EXPECT_EQ(backupName("a.b.csv", 5), "a-5.b.csv");
  EXPECT_EQ(backupName("NOTES", 5), "NOTES-5");
}

TEST(Backup, AWalkLosesWhatTheRuleNamesAndNothingElse) {
  const TemporaryFolder folder;
  const std::vector<std::string> parts{"a",  "-",          "-names-",    "1699855999", "1699855998",
                                       "12", ".",          ".c",         "1e9",        "devices",
                                       "_",  "0169985599", "1799999999", "-",          "B",
                                       "-1", " 1690",      "-prope",     "6666",       "-"};
  // A backup that is too old: nine or ten digits alone behind the last dash ahead of the first dot.
  const std::regex rule("[^.]*-(\\d{9,10})(\\..*)?");
  std::seed_seq seed{7};
  std::mt19937 random(seed);
  std::set<std::string> all;
  std::set<std::string> staying;
  while (all.size() < 10000) {
    std::string name;
    for (auto count = random() % 6 + 1; count > 0; --count) name += parts[random() % parts.size()];
    if (name.front() == '.' || !all.insert(name).second) continue;
    folder.write(name, "");
    std::smatch stamp;
    const bool goes = std::regex_match(name, stamp, rule) && std::stoll(stamp[1]) >= 100000000 &&
                      std::stoll(stamp[1]) < now - 144000;
    if (!goes) staying.insert(name);
  }
  const CodePage page = CodePage::windows1252();
  const auto files = posixFileSystem(page);
  const auto result = backupExistingFiles(*files, FixedClock(), {folder.path()});
  EXPECT_GT(result.deleted, 100U);
  EXPECT_EQ(result.deleted, all.size() - staying.size());
  EXPECT_EQ(result.stamps.size(), result.copied);
  for (const auto& copied : result.stamps) staying.insert(backupName(copied.first, now));
  EXPECT_EQ(folder.names(), staying);
}

}  // namespace kova::test
