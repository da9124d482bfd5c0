// SPDX-License-Identifier: MIT
#include "core/session_snapshot.h"

#include <algorithm>
#include <type_traits>
#include <unordered_set>

namespace kova {
namespace {

/// The state of one control. `before` is of the same kind, or null.
ControlState stateOf(const ControlPointer& control, const ControlState* before) {
  return std::visit(
      [&](const auto* one) -> ControlState {
        using State = typename std::decay_t<decltype(*one)>::State;
        const auto* former = before == nullptr ? nullptr : std::get_if<State>(before);
        return one->state(former == nullptr ? State{} : *former);
      },
      control);
}

void setState(const ControlPointer& control, const ControlState& state) {
  std::visit(
      [&](auto* one) {
        one->setState(std::get<typename std::decay_t<decltype(*one)>::State>(state));
      },
      control);
}

/// Both are of the same control. Lists of rows, captions and what is enabled follow from the rest.
bool showTheSame(const ControlState& one, const ControlState& other) {
  if (const auto* field = std::get_if<TextField::State>(&one)) {
    const auto& text = std::get<TextField::State>(other).text;
    return field->text == text || *field->text == *text;
  }
  if (const auto* box = std::get_if<CheckBox::State>(&one)) {
    return box->value == std::get<CheckBox::State>(other).value;
  }
  if (const auto* option = std::get_if<OptionButton::State>(&one)) {
    return option->selected == std::get<OptionButton::State>(other).selected;
  }
  const auto* list = std::get_if<DropDownList::State>(&one);
  return list == nullptr || list->selected == std::get<DropDownList::State>(other).selected;
}

ProjectSnapshot takeProject(const Project& project, const ProjectSnapshot& before) {
  return {.properties = {project.exportTable, before.properties},
          .history = {project.historyTable, before.history},
          .alarms = {project.alarmTable, before.alarms},
          .exportCount = project.exportCount,
          .historyCount = project.historyCount,
          .alarmCount = project.alarmCount,
          .deviceNames = shared(project.deviceNames, before.deviceNames),
          .projectPath = project.projectPath,
          .historyInUse = project.historyInUse,
          .deviceNamesDefined = project.deviceNamesDefined};
}

/// The tables keep the memory that is reserved for them.
void restoreProject(WizardState& state, const ProjectSnapshot& from) {
  changeProjectPath(state, from.projectPath);
  Project& project = state.project;
  from.properties.copyTo(project.exportTable);
  from.history.copyTo(project.historyTable);
  from.alarms.copyTo(project.alarmTable);
  project.exportCount = from.exportCount;
  project.historyCount = from.historyCount;
  project.alarmCount = from.alarmCount;
  project.deviceNames = *from.deviceNames;
  project.historyInUse = from.historyInUse;
  project.deviceNamesDefined = from.deviceNamesDefined;
}

std::size_t bytesOf(const std::string& text) {
  return sizeof(std::string) + text.capacity();
}

std::size_t bytesOf(const DeviceNames& names) {
  std::size_t bytes = sizeof(DeviceNames);
  for (const std::string& name : names) bytes += bytesOf(name);
  return bytes;
}

template <class Row>
std::size_t bytesOfRow(const Row& row) {
  std::size_t bytes = sizeof(row);
  for (const Column<Row>& column : tableColumns<Row>) {
    const auto* text = std::get_if<std::string Row::*>(&column.member);
    if (text != nullptr) bytes += (row.**text).capacity();
  }
  return bytes;
}

/// Lists of names that no row of the other moment has.
std::size_t bytesOfLists(const SharedRows<PropertyRecord>& rows,
                         const SharedRows<PropertyRecord>& other) {
  if (rows.isSame(other)) return 0;
  std::unordered_set<const DeviceNames*> held;
  for (std::size_t row = 0; row < other.size(); ++row) held.insert(&other[row].devices.get());
  std::size_t bytes = 0;
  for (std::size_t row = 0; row < rows.size(); ++row) {
    const DeviceNames& names = rows[row].devices.get();
    if (held.insert(&names).second) bytes += bytesOf(names);
  }
  return bytes;
}

}  // namespace

SessionSnapshot takeSession(Wizard& wizard, const SessionSnapshot& before) {
  const WizardState& state = wizard.state;
  SessionSnapshot session{.controls = {},
                          .project = takeProject(state.project, before.project),
                          .localNameSuggestion = state.localNameSuggestion,
                          .projectDirEdited = state.projectDirEdited,
                          .localNameEdited = state.localNameEdited,
                          .message = wizard.statusLine.message};
  for (const DesignedControl& control : designedControls(wizard.form)) {
    const std::size_t index = session.controls.size();
    const bool isKnown = index < before.controls.size();
    session.controls.push_back(
        stateOf(control.control, isKnown ? &before.controls[index] : nullptr));
  }
  return session;
}

void restoreSession(Wizard& wizard, const SessionSnapshot& session) {
  restoreProject(wizard.state, session.project);
  wizard.state.localNameSuggestion = session.localNameSuggestion;
  wizard.state.projectDirEdited = session.projectDirEdited;
  wizard.state.localNameEdited = session.localNameEdited;
  wizard.statusLine.message = session.message;
  // All controls first: a widget that follows may ask for any of them.
  const std::vector<DesignedControl> controls = designedControls(wizard.form);
  for (std::size_t index = 0; index < controls.size(); ++index) {
    setState(controls[index].control, session.controls.at(index));
  }
  for (const DesignedControl& control : controls) {
    std::visit([](const auto* one) { run(one->notifyView); }, control.control);
  }
  run(wizard.statusLine.notifyView);
}

bool haveSameForm(const SessionSnapshot& one, const SessionSnapshot& other) {
  return std::equal(one.controls.begin(), one.controls.end(), other.controls.begin(),
                    other.controls.end(), showTheSame);
}

std::size_t bytesBeyond(const SessionSnapshot& session, const SessionSnapshot& other) {
  const ProjectSnapshot& project = session.project;
  std::size_t bytes = sizeof(session) + session.controls.size() * sizeof(ControlState);
  bytes += project.properties.bytesBeyond(other.project.properties, bytesOfRow<PropertyRecord>);
  bytes += bytesOfLists(project.properties, other.project.properties);
  bytes += project.history.bytesBeyond(other.project.history, bytesOfRow<HistoryRecord>);
  bytes += project.alarms.bytesBeyond(other.project.alarms, bytesOfRow<AlarmWatchRecord>);
  if (project.deviceNames != other.project.deviceNames) bytes += bytesOf(*project.deviceNames);
  for (std::size_t index = 0; index < session.controls.size(); ++index) {
    const auto* list = std::get_if<ListBox::State>(&session.controls[index]);
    const auto* field = std::get_if<TextField::State>(&session.controls[index]);
    const ControlState* former = index < other.controls.size() ? &other.controls[index] : nullptr;
    if (list != nullptr) {
      const auto* lines = former == nullptr ? nullptr : std::get_if<ListBox::State>(former);
      bytes += list->lines.bytesBeyond(lines == nullptr ? SharedRows<std::string>() : lines->lines,
                                       [](const std::string& line) { return bytesOf(line); });
    } else if (field != nullptr) {
      const auto* text = former == nullptr ? nullptr : std::get_if<TextField::State>(former);
      if (text == nullptr || text->text != field->text) bytes += bytesOf(*field->text);
    }
  }
  return bytes;
}

}  // namespace kova
