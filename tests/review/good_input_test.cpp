// SPDX-License-Identifier: MIT
// What the wizard writes from good input is a project without a finding.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "review/findings.h"
#include "support/engineer.h"

namespace kova {
namespace {

constexpr int projects = 40;  // a run; a repeated one goes on with other projects

/// An engineer who makes no mistakes.
class GoodEngineer {
 public:
  explicit GoodEngineer(unsigned seed) : random_(seed) {}

  std::string makeProject() {
    engineer_.start();
    const std::string server = name(3 + number(4));
    for (std::size_t typed = 1; typed <= server.size(); ++typed) {
      act("type ExportName " + server.substr(0, typed));
    }
    const int devices = 1 + number(9);
    act("type NumDevices " + std::to_string(devices));
    if (happens()) act("leave NumDevices");
    for (int property = 1 + number(8); property > 0; --property) addProperty(devices, property);
    act("click Command1");
    return home_.path(server);
  }

  bool ended() const { return engineer_.ended; }
  std::string said() const {
    std::string all;
    for (const std::string& message : engineer_.messages) all += message + '\n';
    return all;
  }
  const FileSystem& files() const { return *engineer_.files; }

 private:
  int number(int below) { return std::uniform_int_distribution<int>(0, below - 1)(random_); }
  bool happens() { return number(2) == 0; }
  std::string name(int length) {
    std::string text;
    for (int letter = 0; letter < length; ++letter) text += static_cast<char>('A' + number(26));
    return text;
  }
  void act(const std::string& line) { EXPECT_EQ(engineer_.carryOut(line), "") << line; }
  void maybe(const std::string& line) {
    if (happens()) act(line);
  }

  void addProperty(int devices, int place) {
    act("type PropertyName " + name(1 + number(6)) + std::to_string(place));
    act("type PropertyDescription " + name(number(5)) + " \xFC" + std::to_string(number(99)));
    chooseAny("OutputDataFormat");
    act("type OutputDataSize " + std::to_string(1 + number(devices)));
    if (happens()) chooseAny("ArrayTypeCombo");
    chooseAny("InputDataFormat");
    act("type InputDataSize " + std::to_string(number(9)));
    chooseAny("AccessMode");
    act("type MinValue " + std::to_string(-number(9)));
    act("type MaxValue " + std::to_string(number(900)));
    maybe("type Units kV");
    const bool isProcess = number(6) == 0;
    if (isProcess) act("click ProcessCheck");
    if (isProcess) act("type NumStepsText " + std::to_string(1 + number(9)));
    // Who watches a property reads values of it.
    const bool isRead = !isProcess && list("OutputDataFormat").text() != "NULL";
    if (isRead) maybe("click HistoryCheck");
    if (isRead) maybe("click AlarmWatchCheck");
    if (!isProcess) maybe("click DeviceListCheck");
    act(happens() ? "click AddProperty" : "click EditCmd");
  }

  DropDownList& list(const std::string& name) {
    return *std::get<DropDownList*>(engineer_.control(name));
  }
  void chooseAny(const std::string& name) {
    list(name).select(number(static_cast<int>(list(name).entries().size())));
  }

  std::mt19937 random_;
  test::TemporaryFolder home_;
  test::Engineer engineer_{home_.path()};
};

TEST(Rules, FindNothingInWhatTheWizardWritesFromGoodInput) {
  static unsigned seed = 0;
  const CodePage page = CodePage::windows1252();
  for (int project = 0; project < projects; ++project) {
    GoodEngineer engineer(++seed);
    const std::string folder = engineer.makeProject();
    ASSERT_TRUE(engineer.ended()) << seed << engineer.said();
    for (const Finding& found : findFindings(readProject(engineer.files(), folder, page))) {
      ADD_FAILURE() << seed << ' ' << found.file << ':' << found.line << ':' << found.column << ' '
                    << found.rule->id << ": " << found.what;
    }
  }
}

}  // namespace
}  // namespace kova
