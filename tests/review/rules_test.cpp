// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

#include "platform/posix.h"
#include "review/findings.h"
#include "support/temporary_folder.h"

namespace kova {
namespace {

using Ids = std::set<std::string_view>;

/// The example project, of which a file can be changed.
struct Project {
  Project() { std::filesystem::copy(KOVA_EXAMPLE, folder.path("MAGNET")); }

  /// Puts `text` in the place that the example tells.
  void change(const Example& example, std::string_view text) const {
    const std::string file = "MAGNET/" + std::string(example.file);
    // Names of devices are written to one file and read from another.
    if (example.file == "devices.csv") std::filesystem::remove(folder.path(devices));
    if (example.instead.empty() && text.empty()) return;
    std::string content = example.instead.empty() ? std::string(text) : folder.read(file);
    const auto at = content.find(example.instead);
    ASSERT_LT(at, content.size()) << file << " holds no " << example.instead;
    if (!example.instead.empty()) content.replace(at, example.instead.size(), text);
    folder.write(file, content);
  }

  std::vector<Finding> findings() const {
    return findFindings(readProject(*files, folder.path("MAGNET"), page));
  }
  Ids ids() const {
    Ids found;
    for (const Finding& finding : findings()) found.insert(finding.rule->id);
    return found;
  }

  static constexpr const char* devices = "MAGNET/MAGEQM-devices.csv";
  test::TemporaryFolder folder;
  CodePage page = CodePage::windows1252();
  std::unique_ptr<FileSystem> files = posixFileSystem(page);
};

TEST(Rules, FireOnTheirExampleAndNotOnWhatComesClose) {
  Ids known;
  for (const Rule& rule : rules()) {
    EXPECT_TRUE(known.insert(rule.id).second) << rule.id;
    if (rule.example.file.empty()) continue;
    const Project broken;
    broken.change(rule.example, rule.example.broken);
    EXPECT_TRUE(broken.ids().contains(rule.id)) << rule.id;
    const Project kept;
    kept.change(rule.example, rule.example.kept);
    EXPECT_EQ(kept.ids(), Ids()) << rule.id;
  }
  EXPECT_GE(known.size(), 25U);
}

TEST(Rules, TellPlaceAndReason) {
  struct Case {
    Example example;
    std::string place;
    std::string what;
  };
  const Case cases[] = {
      {{"history.csv", " 2,MAGNET", " 32768,MAGNET", ""},
       "history.csv:3:1",
       "the reading ends here: 32768 is outside -32768 to 32767; 1 line is not read"},
  };
  for (const Case& one : cases) {
    const Project project;
    project.change(one.example, one.example.broken);
    const Finding found = project.findings().front();
    EXPECT_EQ(found.file + ':' + std::to_string(found.line) + ':' + std::to_string(found.column),
              one.place);
    EXPECT_EQ(found.what, one.what);
  }
}

}  // namespace
}  // namespace kova
