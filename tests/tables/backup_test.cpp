// SPDX-License-Identifier: MIT
#include "tables/backup.h"

#include <gtest/gtest.h>

#include <random>
#include <regex>

#include "platform/machine.h"
#include "support/temporary_folder.h"

namespace kova::test {

constexpr std::int32_t now = 1'700'000'000;

struct FixedClock final : Clock {
  std::int32_t unixTime() const override { return now; }
};

TEST(Backup, Verdicts) {
  const std::vector<std::string> beside{"-",           "A-B.csv", "MYSRV-devices.csv", "NOTES",
                                        "V-names.csv", "a.b.csv", "exports.csv",       "x"};
  std::int32_t clock = now;
  const auto expect = [&](FileVerdict verdict, std::initializer_list<std::string_view> names) {
    for (const auto name : names) EXPECT_EQ(classify(name, beside, clock), verdict) << name;
  };
  expect(FileVerdict::inUse,
         {"exports.csv", "V-names.csv", "A-B.csv", "a.b-1699855999.csv", "1699855999.csv", "x-1e9",
          "x-12", "x-999999999", "", "x-2147483648", "x-1699855999a", "x- 1699855999",
          "x-01699855999", "-1699855999", "invoice-1602003000.pdf", "A-1699855999.csv",
          "PSU-1699855999.START-names.csv", "exports-1699855999", "x-1699856000.csv"});
  expect(FileVerdict::backupKept,
         {"exports-1699856000.csv", "V-names-1699856000.csv", "x-2147483647"});
  expect(FileVerdict::backupDeleted,
         {"exports-1699855999.csv", "MYSRV-devices-1699855999.csv", "A-B-1699855999.csv",
          "a-1699855999.b.csv", "NOTES-1000000000", "--1699855999"});
  clock = 200000;
  expect(FileVerdict::backupKept, {"x-56000", "exports-200000.csv", "exports-1699855999.csv"});
  expect(FileVerdict::inUse, {"x-55999", "x-056000", "exports-200000.pdf"});
  EXPECT_EQ(backupName("a.b.csv", 5), "a-5.b.csv");
  EXPECT_EQ(backupName("NOTES", 5), "NOTES-5");
}

TEST(Backup, AWalkLosesWhatTheRuleNamesAndNothingElse) {
  const TemporaryFolder folder;
  const std::vector<std::string> parts{"a",  "-",          "-names-",    "1699855999", "1699855998",
                                       "12", ".",          ".c",         "1e9",        "devices",
                                       "_",  "0169985599", "1799999999", "-",          "B",
                                       "-1", " 1690",      "-prope",     "6666",       "-"};
  // A backup that is too old: ten digits alone behind the last dash ahead of the first dot.
  const std::regex rule("([^.]*)-([1-9]\\d{9})(\\..*)?");
  std::seed_seq seed{7};
  std::mt19937 random(seed);
  std::set<std::string> all;
  while (all.size() < 5000) {
    std::string name;
    for (auto count = random() % 4 + 1; count > 0; --count) name += parts[random() % parts.size()];
    if (name.front() == '.' || !all.insert(name).second) continue;
    folder.write(name, "");
  }
  std::set<std::string> staying;
  for (const std::string& name : all) {
    std::smatch part;
    const bool goes = std::regex_match(name, part, rule) && std::stoll(part[2]) < now - 144000 &&
                      all.contains(part[1].str() + part[3].str());
    if (!goes) staying.insert(name);
  }
  const CodePage page = CodePage::windows1252();
  const auto files = realFileSystem(page);
  const auto result = backupExistingFiles(*files, FixedClock(), {folder.path()});
  EXPECT_GT(result.deleted, 50U);
  EXPECT_EQ(result.deleted, all.size() - staying.size());
  EXPECT_EQ(result.stamps.size(), result.copied);
  for (const auto& copied : result.stamps) staying.insert(backupName(copied.first, now));
  EXPECT_EQ(folder.names(), staying);
}

}  // namespace kova::test
