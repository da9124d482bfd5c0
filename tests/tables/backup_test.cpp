// SPDX-License-Identifier: MIT
#include "tables/backup.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kova::test {

constexpr std::int32_t now = 1'700'000'000;

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

}  // namespace kova::test
