// SPDX-License-Identifier: MIT
// Random user actions on the complete wizard, two bytes each. The bytes after 0xFF are the content
// of every table that exists at the start. The last actions are those of an engineer who makes no
// mistakes: while there were no others, the status line counts what a comparison of the files
// counts, and what was only added is written without a finding.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "back_and_ahead.h"
#include "core/status.h"
#include "harness.h"
#include "review/differences.h"
#include "review/findings.h"
#include "review/preview.h"
#include "support/engineer.h"
#include "tables/number_text.h"

namespace kova::fuzz {
namespace {

using test::Engineer;
using test::type;
using test::words;
using namespace std::string_view_literals;

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

/// Done writes what its preview has shown and no other file, and fails where the preview fails.
void finish(Engineer& engineer) {
  test::Files expected = test::filesBelow(engineer.home);
  const Preview shown = preview(engineer.program.wizard);
  require(test::filesBelow(engineer.home) == expected, "a preview writes nothing");
  for (const auto& [path, content] : shown.files) {
    expected[test::nativeName(test::systemPath(path.native).lexically_normal())] = content;
  }
  engineer.messages.clear();
  engineer.program.wizard.form.Command1.click();
  require(test::filesBelow(engineer.home) == expected, "Done writes what the preview shows");
  const auto& messages = engineer.messages;
  require(shown.failure.empty() || std::count(messages.begin(), messages.end(), shown.failure) == 1,
          "Done ends where the preview ends");
}

/// A property as an engineer without mistakes defines it, with a name that is new.
void addProperty(Engineer& engineer, Form1& form, unsigned with) {
  const auto moment = static_cast<unsigned>(++engineer.clock.now);
  std::mt19937 random(with + 256U * moment);
  const auto below = [&](unsigned limit) { return static_cast<int>(random() % limit); };
  const auto number = [&](unsigned limit) { return std::to_string(below(limit)); };
  const std::string umlaut(static_cast<std::size_t>(below(2)), '\xDC');
  type(form.PropertyName, "P" + umlaut + std::to_string(moment));
  type(form.PropertyDescription, "\xFC " + number(99));
  const long devices = std::strtol(form.NumDevices.text().c_str(), nullptr, 10);
  type(form.OutputDataSize,
       std::to_string(1 + below(devices > 0 ? static_cast<unsigned>(devices) : 1U)));
  type(form.InputDataSize, number(9));
  type(form.MinValue, '-' + number(9));
  type(form.MaxValue, number(900));
  type(form.Units, below(2) == 0 ? "kV" : "none");
  for (DropDownList* list :
       {&form.OutputDataFormat, &form.ArrayTypeCombo, &form.InputDataFormat, &form.AccessMode}) {
    list->select(below(static_cast<unsigned>(list->entries().size())));
  }
  const bool isProcess = below(6) == 0;
  form.ProcessCheck.setValue(isProcess ? 1 : 0);
  // Who watches a property reads values of it.
  const bool isRead = form.OutputDataFormat.text() != "NULL";
  for (CheckBox* box : {&form.HistoryCheck, &form.AlarmWatchCheck, &form.DeviceListCheck}) {
    if (isRead && !isProcess) box->setValue(static_cast<std::int16_t>(below(2)));
  }
  test::click(engineer.control(below(2) == 0 ? "AddProperty" : "EditCmd"));
}

/// Reads the project again, its device names from the file that is read or not at all.
void readAgain(Form1& form, bool withNames) {
  const std::string folder = form.ProjectDir.text() + pathSeparator;
  const std::string read = folder + form.LocalName.text() + "-devices.csv";
  std::error_code noNames;
  if (withNames) std::filesystem::rename(folder + "devices.csv", read, noNames);
  const std::string server = form.ExportName.text();
  for (const std::string& name : {std::string(), server}) type(form.ExportName, name);
}

void checkCount(const Wizard& wizard) {
  const Preview done = preview(wizard);
  require(done.failure.empty(), "Done comes to its end");
  if (done.files.empty()) return;
  Unwritten counted = findUnwritten(wizard.state.project, wizard.state.onDisk);
  if (done.addsHistoryRow) ++counted.historyRows;
  const Unwritten compared = countChanges(comparePreview(wizard.platform.files, done));
  require(
      counted == compared,
      ("the status line counts " + listed(counted) + ", the files " + listed(compared)).c_str());
}

void checkFindings(const Wizard& wizard) {
  static const CodePage page = CodePage::windows1252();
  const std::string& folder = wizard.form.ProjectDir.text();
  for (const Finding& found : findFindings(readProject(wizard.platform.files, folder, page))) {
    require(false, (found.file + ": " + found.message).c_str());
  }
}

/// Done must never write outside the home directory.
bool isAtHome(const Engineer& engineer) {
  const std::string& directory = engineer.program.wizard.form.ProjectDir.text();
  return directory.starts_with(engineer.home + pathSeparator) && directory.find("..") > 9999;
}

/// Two bytes are an action and its argument.
void play(Engineer& engineer, std::size_t action, std::uint8_t with) {
  Wizard& wizard = engineer.program.wizard;
  Form1& form = wizard.form;
  ExportHelper& dialog = engineer.program.helper;
  const bool atHome = isAtHome(engineer);
  const auto select = [&] { fuzz::select(wizard, form.PropertyList, with); };
  const std::array<std::function<void()>, 19 + goodActs> others{
      select,
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
      [&] { engineer.clock.now = 1700200000; },
      [&] {
        for (const char letter : "QVXPUM"sv) type(form.ExportName, form.ExportName.text() + letter);
      },
      [&] { addProperty(engineer, form, with); },
      [&] {
        if (!atHome) return;
        finish(engineer);
        readAgain(form, with % 2 == 0);
      },
      [&] { type(form.NumDevices, std::to_string(1 + with % 9)); },
      [&] {
        type(form.deviceNamesInputText, std::to_string(with) + "\r\nB\r\n");
        form.deviceNamesInputText.lostFocus();
      },
      [&] { form.DeviceListCheck.setValue(form.DeviceListCheck.ticked() ? 0 : 1); },
      select,
      [&] { form.EditCmd.click(); },
      [&] {
        type(form.PropertyDescription, std::to_string(with));
        form.EditCmd.click();
      },
      [&] {
        select();
        form.RemoveProperty.click();
      }};
  const auto offers = [&](std::string_view name) {
    const bool ofDialog = name.ends_with("Param") || name == "ParamText";
    return ofDialog ? dialog.window.loaded() : name != "Command1" || atHome;
  };
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

void makeProjects(const test::TemporaryFolder& folder, const std::string& content) {
  std::string full = exportHeaderLine();
  for (int i = 0; i < 998; ++i) full += "FULL,FULEQM,P" + std::to_string(i) + ",1,,,,,, 2,,\r\n";
  folder.write("home/FULL/exports.csv", full);
  for (const char* project : {"home/", "home/MAG/", "home/VAC/"}) {
    std::filesystem::create_directories(folder.path(project));
    for (const std::string& name :
         words("exports.csv history.csv almwatch.csv MAGEQM-devices.csv VOLT-names.csv")) {
      if (!content.empty()) folder.write(project + name, content);
    }
  }
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
    const bool list = table[k].hasDeviceList || table[k].devices.size() > 0;
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
  makeProjects(outer, input.substr(std::min(end + 1, input.size())));
  Engineer engineer(outer.path("home"));
  engineer.environment.values["FEC_HOME"] = outer.path("repo");
  const Wizard& wizard = engineer.program.wizard;
  engineer.start();
  BackAndAhead backAndAhead;
  bool onlyGood = end > 0;
  bool onlyAdds = onlyGood;
  bool historyClicked = false;
  bool alarmClicked = false;
  const auto byte = [&](std::size_t at) { return static_cast<std::uint8_t>(input[at]); };
  for (std::size_t at = 0; at + 1 < end; at += 2) {
    const std::size_t act = byte(at) % (firstGoodAct + goodActs);
    backAndAhead.start(engineer, isAtHome(engineer));
    const test::Files disk = test::filesBelow(engineer.home);
    play(engineer, act, byte(at + 1));
    backAndAhead.compare(engineer, isAtHome(engineer), test::filesBelow(engineer.home) != disk);
    onlyGood &= act >= firstGoodAct;
    onlyAdds &= onlyGood && (act <= doneOfGood || act == doneOfGood + 1);
    if (onlyGood) checkCount(wizard);
    if (onlyAdds && act == doneOfGood && wizard.state.project.exportCount > 0)
      checkFindings(wizard);
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
