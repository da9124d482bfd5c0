// SPDX-License-Identifier: MIT
#include "json/draft_json.h"

#include <algorithm>
#include <cstdint>

#include "json/row_json.h"

namespace kova {
namespace {

constexpr int draftVersion = 1;

constexpr std::size_t firstLineSize = 40;

/// The first line holds the checksum of all that follows.
std::string firstLine(std::string_view rest) {
  // FNV-1a: tells what a loss of power has cut off or set to zero.
  std::uint64_t sum = 0xcbf29ce484222325U;
  for (const char byte : rest) sum = (sum ^ static_cast<unsigned char>(byte)) * 0x100000001b3U;
  std::string line = R"({"checksum": )" + std::to_string(sum) + ',';
  line.resize(firstLineSize - 1, ' ');
  return line + '\n';
}

Json namesJson(const DeviceNames& names, const CodePage& codePage) {
  Json json = Json::array();
  for (const std::string& name : names) json.push_back(toJson(name, codePage));
  return json;
}

DeviceNames namesOf(const Json& json, const CodePage& codePage) {
  DeviceNames names;
  for (const Json& name : json) fromJson(name, names.emplace_back(), codePage);
  return names;
}

/// A row is a line, so that versions of a draft can be compared.
void appendRows(std::string& content, std::string_view name,
                const std::vector<Shared<std::string>>& rows) {
  content.append(",\n\"").append(name).append("\": [");
  for (std::size_t row = 0; row < rows.size(); ++row) {
    content.append(row == 0 ? "\n" : ",\n").append(*rows[row]);
  }
  content += ']';
}

void append(std::string& content, std::string_view name, const Json& json) {
  content.append(",\n\"").append(name).append("\": ").append(json.dump());
}

Json summaryJson(const DraftSummary& summary, const CodePage& codePage) {
  return {{"version", draftVersion},
          {"codePage", codePage.name()},
          {"time", summary.time},
          {"directory", toJson(summary.directory, codePage)},
          {"exportName", toJson(summary.exportName, codePage)},
          {"unwritten", summary.unwritten},
          {"finishing", summary.finishing}};
}

Json projectJson(const SessionSnapshot& session, const CodePage& codePage) {
  const ProjectSnapshot& project = session.project;
  return {{"path", toJson(project.projectPath, codePage)},
          {"propertyCount", project.exportCount},
          {"historyCount", project.historyCount},
          {"alarmCount", project.alarmCount},
          {"historyInUse", project.historyInUse},
          {"deviceNamesDefined", project.deviceNamesDefined},
          {"directoryEdited", session.projectDirEdited},
          {"localNameEdited", session.localNameEdited},
          {"localNameSuggestion", toJson(session.localNameSuggestion, codePage)},
          {"deviceNames", namesJson(*project.deviceNames, codePage)}};
}

/// The state of a control as JSON, but for the lines of a list.
struct ControlWriter {
  const CodePage& codePage;

  Json operator()(const TextField::State& field) const {
    return {{"text", toJson(*field.text, codePage)},
            {"caret", field.caret},
            {"enabled", field.enabled}};
  }
  Json operator()(const CheckBox::State& box) const { return {{"value", box.value}}; }
  Json operator()(const OptionButton::State& option) const {
    return {{"selected", option.selected}};
  }
  Json operator()(const CommandButton::State& button) const {
    return {{"enabled", button.enabled}};
  }
  Json operator()(const Frame::State& frame) const { return {{"enabled", frame.enabled}}; }
  Json operator()(const Label::State& label) const {
    return {{"caption", toJson(*label.caption, codePage)}, {"enabled", label.enabled}};
  }
  Json operator()(const ListBox::State& list) const { return {{"selected", list.selected}}; }
  Json operator()(const DropDownList::State& list) const {
    return {{"selected", list.selected}, {"enabled", list.enabled}};
  }
};

/// Throws Failure for a state that the control can't have.
class ControlReader {
 public:
  ControlReader(const Json& document, const Json& json, const CodePage& codePage)
      : document_(document), json_(json), codePage_(codePage) {}

  ControlState operator()(const TextField* /*field*/) const {
    TextField::State state{text("text"), 0, value<bool>("enabled")};
    state.caret = static_cast<std::size_t>(value<std::uint32_t>("caret"));
    check(state.caret <= state.text->size());
    return state;
  }
  ControlState operator()(const CheckBox* /*box*/) const {
    return CheckBox::State{static_cast<std::int16_t>(index("value", -1, 2))};
  }
  ControlState operator()(const OptionButton* /*option*/) const {
    return OptionButton::State{value<bool>("selected")};
  }
  ControlState operator()(const CommandButton* /*button*/) const {
    return CommandButton::State{value<bool>("enabled")};
  }
  ControlState operator()(const Frame* /*frame*/) const {
    return Frame::State{value<bool>("enabled")};
  }
  ControlState operator()(const Label* /*label*/) const {
    return Label::State{text("caption"), value<bool>("enabled")};
  }
  ControlState operator()(const ListBox* /*list*/) const {
    std::vector<std::string> lines;
    for (const Json& line : document_.at("lines")) {
      fromJson(line, lines.emplace_back(), codePage_);
    }
    return ListBox::State{{lines, {}}, index("selected", ListBox::none, lines.size())};
  }
  ControlState operator()(const DropDownList* list) const {
    return DropDownList::State{index("selected", -1, list->entries().size()),
                               value<bool>("enabled")};
  }

 private:
  static void check(bool holds) {
    if (!holds) throw Failure("The draft does not match the form");
  }
  template <class Value>
  Value value(const char* key) const {
    Value read{};
    fromJson(json_.at(key), read, codePage_);
    return read;
  }
  Shared<std::string> text(const char* key) const {
    return std::make_shared<const std::string>(value<std::string>(key));
  }
  std::int32_t index(const char* key, std::int32_t least, std::size_t end) const {
    const auto read = value<std::int32_t>(key);
    check(read >= least && read < static_cast<std::int32_t>(end));
    return read;
  }

  const Json& document_;
  const Json& json_;
  const CodePage& codePage_;
};

void readMore(const Json& json, PropertyRecord& row, const CodePage& codePage) {
  fromJson(json.at("keepsHistory"), row.hasHistory, codePage);
  fromJson(json.at("hasDeviceList"), row.hasDeviceList, codePage);
  fromJson(json.at("watchesAlarms"), row.hasAlarmWatch, codePage);
  if (const Json& names = json.at("deviceNames"); !names.is_null()) {
    row.devices.edit() = namesOf(names, codePage);
  }
}
void readMore(const Json& /*json*/, HistoryRecord& /*row*/, const CodePage& /*codePage*/) {}
void readMore(const Json& json, AlarmWatchRecord& row, const CodePage& codePage) {
  fromJson(json.at("countThreshold"), row.countThreshold, codePage);
}

/// Reads a table whose first `count` rows are active.
template <class Row>
SharedRows<Row> rowsOf(const Json& json, std::int16_t count, const CodePage& codePage) {
  std::vector<Row> rows;
  for (const Json& one : json) {
    Row& row = rows.emplace_back();
    readColumns(one, row, codePage);
    readMore(one, row, codePage);
  }
  const bool fits = count >= 0 && static_cast<std::size_t>(count) <= rows.size() &&
                    rows.size() <= static_cast<std::size_t>(tableRows);
  if (!fits) throw Failure("The draft's number of rows is wrong");
  return {rows, {}};
}

SessionSnapshot sessionOf(Wizard& wizard, const Json& document, const CodePage& codePage) {
  SessionSnapshot session;
  const Json& form = document.at("form");
  for (const DesignedControl& control : designedControls(wizard.form)) {
    const Json& json = form.at(std::string(control.design->name));
    session.controls.push_back(
        std::visit(ControlReader(document, json, codePage), control.control));
  }
  const Json& json = document.at("project");
  ProjectSnapshot& project = session.project;
  const auto read = [&](const char* key, auto& value) { fromJson(json.at(key), value, codePage); };
  read("path", project.projectPath);
  read("propertyCount", project.exportCount);
  read("historyCount", project.historyCount);
  read("alarmCount", project.alarmCount);
  read("historyInUse", project.historyInUse);
  read("deviceNamesDefined", project.deviceNamesDefined);
  read("directoryEdited", session.projectDirEdited);
  read("localNameEdited", session.localNameEdited);
  read("localNameSuggestion", session.localNameSuggestion);
  project.deviceNames =
      std::make_shared<const DeviceNames>(namesOf(json.at("deviceNames"), codePage));
  project.properties =
      rowsOf<PropertyRecord>(document.at("properties"), project.exportCount, codePage);
  project.history = rowsOf<HistoryRecord>(document.at("history"), project.historyCount, codePage);
  project.alarms = rowsOf<AlarmWatchRecord>(document.at("alarms"), project.alarmCount, codePage);
  const auto lines = static_cast<std::size_t>(project.exportCount);
  if (document.at("lines").size() != lines) throw Failure("The draft's number of lines is wrong");
  return session;
}

DraftSummary summaryOf(const Json& json, const CodePage& codePage) {
  if (json.at("version") != draftVersion) {
    throw Failure("Another version of the wizard has written the draft");
  }
  if (json.at("codePage") != codePage.name()) {
    throw Failure("The draft was typed in the code page " + json.at("codePage").dump());
  }
  DraftSummary summary;
  fromJson(json.at("time"), summary.time, codePage);
  fromJson(json.at("directory"), summary.directory, codePage);
  fromJson(json.at("exportName"), summary.exportName, codePage);
  json.at("unwritten").get_to(summary.unwritten);
  json.at("finishing").get_to(summary.finishing);
  return summary;
}

/// Runs `read`, and makes a Failure of what the library throws.
template <class Read>
auto parsed(Read read) {
  try {
    return read();
  } catch (const Json::exception& error) {
    throw Failure(std::string("The draft can't be read: ") + error.what());
  }
}

std::string_view checkedRest(std::string_view content) {
  const std::size_t start = std::min(content.size(), firstLineSize);
  const std::string_view rest = content.substr(start);
  if (content.substr(0, start) != firstLine(rest)) throw Failure("The draft is not complete");
  return rest;
}

}  // namespace

void DraftWriter::forgetListsOfOtherDisk(const SessionSnapshot& session,
                                         const ProjectOnDisk& disk) {
  if (directory_ == session.project.projectPath && states_ == disk.states) return;
  directory_ = session.project.projectPath;
  states_ = disk.states;
  properties_ = {};
}

std::string DraftWriter::propertyText(const PropertyRecord& row, const ProjectOnDisk& disk) const {
  Json json = columnsJson(row, codePage_);
  json["keepsHistory"] = row.hasHistory;
  json["hasDeviceList"] = row.hasDeviceList;
  json["watchesAlarms"] = row.hasAlarmWatch;
  const auto held = disk.nameLists.find(row.propertyName);
  const bool isHeld =
      row.hasDeviceList && held != disk.nameLists.end() && held->second.holds(row.devices);
  json["deviceNames"] = isHeld ? Json(nullptr) : namesJson(row.devices, codePage_);
  return json.dump();
}

const std::string& DraftWriter::write(Wizard& wizard, const DraftSummary& summary,
                                      const SessionSnapshot& session, const ProjectOnDisk& disk) {
  forgetListsOfOtherDisk(session, disk);
  // Kept between drafts: a new text of this size would cost more than all the rest.
  std::string& content = content_;
  content.assign(firstLineSize, ' ');
  content.append("\"summary\": ").append(summaryJson(summary, codePage_).dump());
  append(content, "project", projectJson(session, codePage_));
  appendRows(content, "properties",
             properties_.of(session.project.properties,
                            [&](const PropertyRecord& row) { return propertyText(row, disk); }));
  appendRows(content, "history",
             history_.of(session.project.history, [&](const HistoryRecord& row) {
               return columnsJson(row, codePage_).dump();
             }));
  appendRows(content, "alarms",
             alarms_.of(session.project.alarms, [&](const AlarmWatchRecord& row) {
               Json json = columnsJson(row, codePage_);
               json["countThreshold"] = row.countThreshold;
               return json.dump();
             }));
  Json form;
  std::size_t index = 0;
  for (const DesignedControl& control : designedControls(wizard.form)) {
    const ControlState& state = session.controls.at(index++);
    form[std::string(control.design->name)] = std::visit(ControlWriter{codePage_}, state);
    if (const auto* list = std::get_if<ListBox::State>(&state)) {
      appendRows(content, "lines", lines_.of(list->lines, [&](const std::string& line) {
        return toJson(line, codePage_).dump();
      }));
    }
  }
  append(content, "form", form);
  content += "}\n";
  return content.replace(0, firstLineSize,
                         firstLine(std::string_view(content).substr(firstLineSize)));
}

DraftSummary draftSummary(std::string_view content, const CodePage& codePage) {
  const std::string_view rest = checkedRest(content);
  const std::string_view line = rest.substr(0, rest.find(",\n"));
  return parsed([&] {
    return summaryOf(Json::parse("{" + std::string(line) + "}").at("summary"), codePage);
  });
}

Draft readDraft(Wizard& wizard, std::string_view content, const CodePage& codePage) {
  checkedRest(content);
  return parsed([&] {
    const Json document = Json::parse(content);
    Draft draft{.summary = summaryOf(document.at("summary"), codePage),
                .session = sessionOf(wizard, document, codePage),
                .listsOnDisk = {}};
    const Json& rows = document.at("properties");
    for (std::size_t row = 0; row < rows.size(); ++row) {
      if (rows[row].at("deviceNames").is_null()) draft.listsOnDisk.push_back(row);
    }
    return draft;
  });
}

}  // namespace kova
