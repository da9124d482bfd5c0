// SPDX-License-Identifier: MIT
// An engineer without a fault: no finding in what the wizard has written, and a status line that
// counts what a comparison of the files counts.
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <functional>
#include <random>
#include <string>

#include "core/status.h"
#include "review/differences.h"
#include "review/findings.h"
#include "support/engineer.h"

namespace kova {
namespace {

constexpr int projects = 40;  // a run; a repeated one goes on with other projects

/// An engineer who makes no mistakes.
class GoodEngineer {
 public:
  GoodEngineer(unsigned seed, const std::string& home) : random_(seed), engineer_(home) {
    engineer_.start();
    server_ = name(3 + number(4));
    for (std::size_t typed = 1; typed <= server_.size(); ++typed) {
      type("ExportName", server_.substr(0, typed));
    }
  }

  void makeProject() {
    const int devices = 1 + number(9);
    type("NumDevices", std::to_string(devices));
    if (happens()) engineer_.field("NumDevices").lostFocus();
    for (int property = 1 + number(8); property > 0; --property) addProperty(devices, property);
    click("Command1");
  }
  void doAnything() {
    const int properties = engineer_.rows().properties;
    if (properties == 0) return addProperty(9, 10);
    const int row = number(properties);
    const std::array<std::function<void()>, 8> acts{
        [&] { addProperty(9, 10 + number(3)); },
        [&] { select(row); },
        [&] {
          select(row);
          click("RemoveProperty");
        },
        [&] { click("EditCmd"); },
        [&] {
          type("PropertyDescription", name(2));
          click("EditCmd");
        },
        [&] { type("NumDevices", std::to_string(1 + number(9))); },
        [&] { maybe("DeviceListCheck"); },
        [&] {
          type("deviceNamesInputText", name(2) + "\r\n" + name(3) + "\r\n");
          engineer_.field("deviceNamesInputText").lostFocus();
        }};
    acts.at(static_cast<std::size_t>(number(acts.size())))();
  }
  const std::string& server() const { return server_; }
  const Wizard& wizard() const { return engineer_.program.wizard; }

  bool ended() const { return engineer_.ended; }
  std::string said() const {
    std::string all;
    for (const std::string& message : engineer_.messages) all += message + '\n';
    return all;
  }
  const FileSystem& files() const { return *engineer_.files; }

 private:
  void select(int row) { engineer_.program.wizard.form.PropertyList.select(row); }
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
    type("PropertyName", name(1 + number(6)) + (happens() ? "\xDC" : "") + std::to_string(place));
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
  test::Engineer engineer_;
  std::string server_;
};

TEST(Rules, FindNothingInWhatTheWizardWritesFromGoodInput) {
  static unsigned seed = 0;
  const CodePage page = CodePage::windows1252();
  for (int project = 0; project < projects; ++project) {
    const test::TemporaryFolder home;
    GoodEngineer engineer(++seed, home.path());
    engineer.makeProject();
    const std::string folder = home.path(engineer.server());
    ASSERT_TRUE(engineer.ended()) << seed << engineer.said();
    for (const Finding& found : findFindings(readProject(engineer.files(), folder, page))) {
      ADD_FAILURE() << seed << ' ' << found.file << ':' << found.line << ':' << found.column << ' '
                    << found.rule->id << ": " << found.message;
    }
  }
}

TEST(StatusLine, CountsWhatAComparisonOfTheFilesCounts) {
  static unsigned seed = 0;
  for (int project = 0; project < projects / 4; ++project) {
    const test::TemporaryFolder home;
    GoodEngineer first(++seed, home.path());
    first.makeProject();
    if (seed % 2 == 0) {
      const std::filesystem::path folder = home.path(first.server());
      std::error_code noNames;
      std::filesystem::rename(folder / "devices.csv",
                              folder / (first.wizard().form.LocalName.text() + "-devices.csv"),
                              noNames);
    }
    GoodEngineer second(seed, home.path());
    for (int act = 0; act < 40; ++act) {
      second.doAnything();
      const Wizard& wizard = second.wizard();
      const Preview done = preview(wizard);
      ASSERT_EQ(done.failure, "");
      if (done.files.empty()) continue;
      Unwritten counted = findUnwritten(wizard.state.project, wizard.state.onDisk);
      if (done.addsHistoryRow) ++counted.historyRows;
      ASSERT_EQ(listed(counted), listed(countChanges(comparePreview(second.files(), done))))
          << seed << ' ' << act << ' ' << statusText(wizard) << second.said();
    }
  }
}

}  // namespace
}  // namespace kova
