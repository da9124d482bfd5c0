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
      type("ExportName", server.substr(0, typed));
    }
    const int devices = 1 + number(9);
    type("NumDevices", std::to_string(devices));
    if (happens()) engineer_.field("NumDevices").lostFocus();
    for (int property = 1 + number(8); property > 0; --property) addProperty(devices, property);
    click("Command1");
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
  void type(const std::string& field, const std::string& text) {
    test::type(engineer_.field(field), text);
  }
  void click(const std::string& control) { test::click(engineer_.control(control)); }
  void maybe(const std::string& box) {
    if (happens()) click(box);
  }

  void addProperty(int devices, int place) {
    type("PropertyName", name(1 + number(6)) + std::to_string(place));
    type("PropertyDescription", name(number(5)) + " \xFC" + std::to_string(number(99)));
    chooseAny("OutputDataFormat");
    type("OutputDataSize", std::to_string(1 + number(devices)));
    if (happens()) chooseAny("ArrayTypeCombo");
    chooseAny("InputDataFormat");
    type("InputDataSize", std::to_string(number(9)));
    chooseAny("AccessMode");
    type("MinValue", std::to_string(-number(9)));
    type("MaxValue", std::to_string(number(900)));
    if (happens()) type("Units", "kV");
    const bool isProcess = number(6) == 0;
    if (isProcess) click("ProcessCheck");
    if (isProcess) type("NumStepsText", std::to_string(1 + number(9)));
    // Who watches a property reads values of it.
    const bool isRead = !isProcess && list("OutputDataFormat").text() != "NULL";
    if (isRead) maybe("HistoryCheck");
    if (isRead) maybe("AlarmWatchCheck");
    if (!isProcess) maybe("DeviceListCheck");
    click(happens() ? "AddProperty" : "EditCmd");
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
