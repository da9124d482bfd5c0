// SPDX-License-Identifier: MIT
// Random user actions on the complete wizard, two bytes each. The bytes after 0xFF are the content
// of every table that exists at the start.
#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "harness.h"
#include "review/preview.h"
#include "support/engineer.h"
#include "tables/number_text.h"

namespace kova::fuzz {
namespace {

using test::Engineer;
using namespace std::string_view_literals;

std::vector<std::string> words(const std::string& text) {
  std::istringstream stream(text);
  return {std::istream_iterator<std::string>(stream), {}};
}

// The corpus holds indexes into these lists and `others`. Append new actions to `others`.
const std::vector<std::string> fields = words(
    "ExportName LocalName PropertyName NumDevices PropertyDescription MaxValue MinValue Units "
    "InputDataSize OutputDataSize NumStepsText ParamText ArchiveRateText toleranceText almHiText "
    "almSeverityText almMaskText deviceNumberInputText deviceNamesInputText ProjectDir");
const std::vector<std::string> clickable = words(
    "ExportName LocalName PropertyName ProjectDir AddProperty EditCmd RemoveProperty "
    "PropertyList HistoryCheck AlarmWatchCheck DeviceListCheck ProcessCheck ServerOption "
    "propertyOption Label9 nextParam lastParam DoneParam Command1 AddProperty EditCmd");
constexpr std::array texts{
    ""sv,         "MAG"sv,   "VAC"sv,        "FULL"sv, "VOLT"sv, "RAMP"sv, "QVX"sv,   "LONGNAMES"sv,
    "a,b"sv,      R"("q)"sv, "#x"sv,         "../x"sv, "x/y"sv,  "*"sv,    "-1"sv,    "0"sv,
    "1"sv,        "2"sv,     "3"sv,          "300"sv,  "1.5"sv,  "1E9"sv,  "32767"sv, "32768"sv,
    "[0:1 V]y"sv, "none"sv,  "A\r\nB\r\n"sv, "\xB0"sv, "x\0y"sv};

void checkNumDevices(const Wizard& wizard) {
  const double value = textValue(wizard.form.NumDevices.text());
  if (value < 0.6 || value > 32767) return;
  for (std::size_t k = 0; k < wizard.form.PropertyList.lines().size(); ++k) {
    require(wizard.state.project.exportTable[k].numModules == std::to_string(toInt16(value)),
            "rows follow");
  }
  require(std::ssize(wizard.state.project.deviceNames) == toInt16(value), "a device has a name");
}

void checkSelection(const Form1& form, const PropertyRecord& row) {
  require(form.HistoryCheck.ticked() == row.hasHistory, "the history box shows the row");
  require(form.AlarmWatchCheck.ticked() == row.hasAlarmWatch, "the alarm box shows it");
  require(form.DeviceListCheck.ticked() == row.hasDeviceList, "the list box shows it");
}

void typeInto(Engineer& engineer, const std::string& name, std::string text) {
  TextField& field = engineer.field(name);
  if (name == "ProjectDir") text.insert(0, engineer.home + pathSeparator);
  const bool changes = field.text() != text;
  test::type(field, text);
  if (name == "NumDevices" && changes) checkNumDevices(engineer.program.wizard);
}

void select(const Wizard& wizard, ListBox& list, std::uint8_t with) {
  if (list.lines().empty()) return;
  list.select(static_cast<std::int32_t>(with % list.lines().size()));
  const auto row = static_cast<std::size_t>(list.selectedIndex());
  const auto& table = wizard.state.project.exportTable;
  if (row < table.size()) checkSelection(wizard.form, table[row]);
}

/// Every file of the home directory by its path.
test::Files filesOf(const std::string& home) {
  test::Files files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(home)) {
    std::ifstream file(entry.path(), std::ios::binary);
    if (entry.is_directory()) continue;
    files[test::nativeName(entry.path())] = {std::istreambuf_iterator(file), {}};
  }
  return files;
}

/// Done writes what its preview has shown and no other file, and fails where the preview fails.
void finish(Engineer& engineer) {
  test::Files expected = filesOf(engineer.home);
  const Preview shown = preview(engineer.program.wizard);
  require(filesOf(engineer.home) == expected, "a preview writes nothing");
  for (const auto& [path, content] : shown.files) {
    expected[test::nativeName(test::systemPath(path.native).lexically_normal())] = content;
  }
  engineer.messages.clear();
  engineer.program.wizard.form.Command1.click();
  require(filesOf(engineer.home) == expected, "Done writes what the preview shows");
  const auto& messages = engineer.messages;
  require(shown.failure.empty() || std::count(messages.begin(), messages.end(), shown.failure) == 1,
          "Done ends where the preview ends");
}

/// Two bytes are an action and its argument.
void play(Engineer& engineer, std::size_t action, std::uint8_t with) {
  Wizard& wizard = engineer.program.wizard;
  Form1& form = wizard.form;
  ExportHelper& dialog = engineer.program.helper;
  const std::array<std::function<void()>, 19> others{
      [&] { select(wizard, form.PropertyList, with); },
      [&] { test::clickAt(form.deviceNamesInputText, with); },
      [&] { form.almHiText.gotFocus(); },
      [&] { form.almMaskText.gotFocus(); },
      [&] { form.NumDevices.lostFocus(); },
      [&] { form.deviceNamesInputText.lostFocus(); },
      [&] { form.OutputDataFormat.setText("Single"); },
      [&] { form.OutputDataFormat.setText("NULL"); },
      [&] { form.InputDataFormat.setText("Integer"); },
      [&] { form.InputDataFormat.setText("NULL"); },
      [&] { form.ArrayTypeCombo.setText("CHANNEL"); },
      [&] { form.AccessMode.setText("READ|WRITE"); },
      [&] { form.srvGuide.click(); },
      [&] { form.prpGuide.click(); },
      [&] {
        if (dialog.window.loaded()) dialog.ParamText.keyDown(TextField::enterKey);
      },
      [&] { dialog.window.unload(); },
      [&] { engineer.answers.push_back(Answer::yes); },
      [&] { engineer.answers.push_back(Answer::cancel); },
      [&] { engineer.clock.now = 1700200000; }};
  // Never write outside the home directory.
  const std::string& directory = form.ProjectDir.text();
  const bool atHome =
      directory.starts_with(engineer.home + pathSeparator) && directory.find("..") > 9999;
  const auto offers = [&](std::string_view name) {
    const bool ofDialog = name.ends_with("Param") || name == "ParamText";
    return ofDialog ? dialog.window.loaded() : name != "Command1" || atHome;
  };
  action %= fields.size() + clickable.size() + others.size();
  const std::size_t click = action - fields.size();
  if (action < fields.size()) {
    if (!offers(fields.at(action))) return;
    typeInto(engineer, fields.at(action), std::string(texts.at(with % texts.size())));
  } else if (click < clickable.size()) {
    const std::string& name = clickable.at(click);
    if (offers(name)) name == "Command1" ? finish(engineer) : test::click(engineer.control(name));
  } else {
    others.at(click - clickable.size())();
  }
}

void makeProjects(const std::string& home, const std::string& content) {
  for (const char* folder : {"/", "/MAG/", "/VAC/"}) {
    std::filesystem::create_directory(home + folder);
    for (const char* name :
         {"exports.csv", "history.csv", "almwatch.csv", "MAGEQM-devices.csv", "VOLT-names.csv"}) {
      if (!content.empty()) std::ofstream(home + folder + name, std::ios::binary) << content;
    }
  }
  std::string full = exportHeaderLine();
  for (int i = 0; i < 998; ++i) full += "FULL,FULEQM,P" + std::to_string(i) + ",1,,,,,, 2,,\r\n";
  std::filesystem::create_directory(home + "/FULL");
  std::ofstream(home + "/FULL/exports.csv", std::ios::binary) << full;
}

void checkRows(const Wizard& wizard) {
  static const std::string empty = exportDataLine({}, 0);
  const auto& lines = wizard.form.PropertyList.lines();
  const auto& table = wizard.state.project.exportTable;
  const auto count = static_cast<std::size_t>(wizard.state.project.exportCount);
  require(lines.size() == count, "a row has a line");
  for (std::size_t k = 0; k < count; ++k) {
    const std::string head = '[' + table[k].exportName + "] " + table[k].propertyName + " <";
    require(lines[k].starts_with(head), "line k is row k");
  }
  for (std::size_t k = count; k < std::min(table.size(), count + 8); ++k) {
    const bool flags = table[k].hasHistory || table[k].hasAlarmWatch;
    require(exportDataLine(table[k], 0) == empty && !flags, "free slots are empty");
    const bool list = table[k].hasDeviceList || !table[k].devices.empty();
    require(k == count || !list, "only the first free slot has a list");
  }
}

/// Once its box has been clicked, a panel is enabled if the box is ticked.
void checkPanel(const CheckBox& box, const Frame& frame, bool& clicked) {
  clicked = clicked || box.ticked() || !frame.enabled();
  require(!clicked || frame.enabled() == box.ticked(), "a ticked box enables its panel");
}

}  // namespace

void check(std::string_view bytes) {
  const test::TemporaryFolder outer;
  std::filesystem::create_directory(outer.path("repo"));
  const std::string input(bytes);
  const auto end = std::min(input.find('\xff'), input.size());
  makeProjects(outer.path("home"), input.substr(std::min(end + 1, input.size())));
  Engineer engineer(outer.path("home"));
  engineer.environment.values["FEC_HOME"] = outer.path("repo");
  const Wizard& wizard = engineer.program.wizard;
  engineer.start();
  bool historyClicked = false;
  bool alarmClicked = false;
  const auto byte = [&](std::size_t at) { return static_cast<std::uint8_t>(input[at]); };
  for (std::size_t at = 0; at + 1 < end; at += 2) {
    play(engineer, byte(at), byte(at + 1));
    const WizardState& state = wizard.state;
    for (const auto count :
         {state.project.exportCount, state.project.historyCount, state.project.alarmCount}) {
      require(count >= 0 && count <= tableRows, "counts are in bounds");
    }
    checkRows(wizard);
    checkPanel(wizard.form.HistoryCheck, wizard.form.HistoryPanel, historyClicked);
    checkPanel(wizard.form.AlarmWatchCheck, wizard.form.AlarmWatchPanel, alarmClicked);
  }
  require(outer.names() == std::set<std::string>{"home", "repo"}, "nothing is outside");
}

}  // namespace kova::fuzz
