// SPDX-License-Identifier: MIT
// Random acts of an engineer on the whole wizard. Two bytes are an act and what it is done with;
// what stands behind 0xFF is the content of every table that lies there already.
#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "harness.h"
#include "review/preview.h"
#include "support/engineer.h"
#include "tables/number_text.h"

namespace kova::fuzz {
namespace {

/// The parts of `text`, each behind `head`.
std::vector<std::string> split(const std::string& text, char mark, const std::string& head) {
  std::vector<std::string> parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, mark);) parts.push_back(head + part);
  return parts;
}

std::vector<std::string> everyAct() {
  const std::string fields =
      "ExportName LocalName PropertyName NumDevices PropertyDescription MaxValue MinValue Units "
      "InputDataSize OutputDataSize NumStepsText ParamText ArchiveRateText toleranceText almHiText "
      "almSeverityText almMaskText deviceNumberInputText deviceNamesInputText ProjectDir";
  const std::string clicked =
      "ExportName LocalName PropertyName ProjectDir AddProperty EditCmd RemoveProperty "
      "PropertyList HistoryCheck AlarmWatchCheck DeviceListCheck ProcessCheck ServerOption "
      "propertyOption Label9 nextParam lastParam DoneParam Command1 AddProperty EditCmd";
  const std::string others =
      "select,caret deviceNamesInputText,focus almHiText,focus almMaskText,leave NumDevices,"
      "leave deviceNamesInputText,choose OutputDataFormat Single,choose OutputDataFormat NULL,"
      "choose InputDataFormat Integer,choose InputDataFormat NULL,choose ArrayTypeCombo CHANNEL,"
      "choose AccessMode READ|WRITE,menu server,menu property,enter ParamText,close,answer yes,"
      "answer cancel,time 1700200000";
  std::vector<std::string> acts = split(fields, ' ', "type ");
  for (auto& act : split(clicked, ' ', "click ")) acts.push_back(std::move(act));
  for (auto& act : split(others, ',', "")) acts.push_back(std::move(act));
  return acts;
}

/// The act as a line of a script; empty where the window does not offer it.
std::string lineOf(const test::Engineer& engineer, std::uint8_t act, std::uint8_t with) {
  static const std::vector<std::string> acts = everyAct();
  static const std::vector<std::string> texts = split(
      "|MAG|VAC|FULL|VOLT|RAMP|QVX|LONGNAMES|a,b|\"q|#x|../x|x/y|*|-1|0|1|2|3|300|1.5|1E9|"
      "32767|32768|[0:1 V]y|none|A\\r\\nB\\r\\n|\xB0|x\\0y",
      '|', "");
  const std::string& line = acts[act % acts.size()];
  const auto about = [&](const char* what) { return line.find(what) != std::string::npos; };
  const std::string& directory = engineer.field("ProjectDir").text();
  const auto rows = engineer.program.wizard.form.PropertyList.lines().size();
  if (about("Param") && !engineer.program.helper.window.loaded()) return "";
  // What lies outside of the home directory is none of this program's business.
  const bool home = directory.starts_with(engineer.home + "/") && directory.find("/..") > 9999;
  if ((about("Command1") && !home) || (about("select") && rows == 0)) return "";
  if (line == "type ProjectDir") return line + " {home}/" + texts[with % texts.size()];
  if (about("type")) return line + " " + texts[with % texts.size()];
  return about("select")  ? line + " " + std::to_string(with % rows)
         : about("caret") ? line + " " + std::to_string(with)
                          : line;
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
  const auto& table = wizard.state.exportTable;
  const auto count = static_cast<std::size_t>(wizard.state.exportCount);
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

/// Once its box has been clicked, a panel is live as the box says.
void checkPanel(const CheckBox& box, const Frame& frame, bool& clicked) {
  clicked = clicked || box.ticked() || !frame.enabled();
  require(!clicked || frame.enabled() == box.ticked(), "a panel is live as its box says");
}

void checkSelection(const Wizard& wizard) {
  const auto selected = static_cast<std::size_t>(wizard.form.PropertyList.selectedIndex());
  if (selected >= wizard.state.exportTable.size()) return;
  const PropertyRecord& row = wizard.state.exportTable[selected];
  require(wizard.form.HistoryCheck.ticked() == row.hasHistory, "the history box shows the row");
  require(wizard.form.AlarmWatchCheck.ticked() == row.hasAlarmWatch, "the alarm box shows it");
  require(wizard.form.DeviceListCheck.ticked() == row.hasDeviceList, "the list box shows it");
}

void checkNumDevices(const Wizard& wizard) {
  const double value = textValue(wizard.form.NumDevices.text());
  if (value < 0.6 || value > 32767) return;
  for (std::size_t k = 0; k < wizard.form.PropertyList.lines().size(); ++k) {
    require(wizard.state.exportTable[k].numModules == std::to_string(toInt16(value)),
            "rows follow");
  }
  require(std::ssize(wizard.state.deviceNames) == toInt16(value), "a device has a name");
}

/// Every file of the home directory by its path.
test::Files filesOf(const std::string& home) {
  test::Files files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(home)) {
    std::ifstream file(entry.path(), std::ios::binary);
    if (!entry.is_directory()) files[entry.path().native()] = {std::istreambuf_iterator(file), {}};
  }
  return files;
}

/// Carries Done out. What the preview has shown is what it writes, and says.
std::string finish(test::Engineer& engineer) {
  test::Files expected = filesOf(engineer.home);
  const Preview shown = preview(engineer.program.wizard);
  require(filesOf(engineer.home) == expected, "a preview writes nothing");
  for (const auto& [path, content] : shown.files) {
    expected[std::filesystem::path(path.native).lexically_normal()] = content;
  }
  engineer.messages.clear();
  std::string trouble = engineer.carryOut("click Command1");
  require(filesOf(engineer.home) == expected, "Done writes what the preview shows");
  const auto& said = engineer.messages;
  require(shown.failure.empty() || std::count(said.begin(), said.end(), shown.failure) == 1,
          "a preview ends where Done ends");
  return trouble;
}

}  // namespace

void check(std::string_view bytes) {
  const test::TemporaryFolder outer;
  std::filesystem::create_directory(outer.path("repo"));
  const std::string input(bytes);
  const auto end = std::min(input.find('\xff'), input.size());
  makeProjects(outer.path("home"), input.substr(std::min(end + 1, input.size())));
  test::Engineer engineer(outer.path("home"));
  engineer.environment.values["FEC_HOME"] = outer.path("repo");
  const Wizard& wizard = engineer.program.wizard;
  engineer.start();
  bool historyClicked = false;
  bool alarmClicked = false;
  const auto byte = [&](std::size_t at) { return static_cast<std::uint8_t>(input[at]); };
  for (std::size_t at = 0; at + 1 < end; at += 2) {
    const std::string line = lineOf(engineer, byte(at), byte(at + 1));
    const std::string devices = engineer.field("NumDevices").text();
    const bool done = line == "click Command1";
    require(line.empty() || (done ? finish(engineer) : engineer.carryOut(line)).empty(),
            "an act is carried out");
    const WizardState& state = wizard.state;
    for (const auto count : {state.exportCount, state.historyCount, state.alarmCount}) {
      require(count >= 0 && count <= tableRows, "counts are in bounds");
    }
    checkRows(wizard);
    checkPanel(wizard.form.HistoryCheck, wizard.form.HistoryPanel, historyClicked);
    checkPanel(wizard.form.AlarmWatchCheck, wizard.form.AlarmWatchPanel, alarmClicked);
    if (line.starts_with("select")) checkSelection(wizard);
    if (line.starts_with("type NumD") && line.substr(16) != devices) checkNumDevices(wizard);
  }
  require(outer.names() == std::set<std::string>{"home", "repo"}, "nothing lies outside");
}

}  // namespace kova::fuzz
