// SPDX-License-Identifier: MIT
#include "back_and_ahead.h"

#include "core/status.h"
#include "harness.h"
#include "review/preview.h"

namespace kova::fuzz {
namespace {

struct Writer {
  std::string text;

  void add(std::string_view value) { (text += value) += '\n'; }
  void add(long value) { add(std::to_string(value)); }
  void operator()(const TextField* field) {
    add(field->text());
    add(static_cast<long>(field->caret()) + (field->enabled() ? 0 : 100000));
  }
  void operator()(const CheckBox* box) { add(box->value()); }
  void operator()(const OptionButton* option) { add(option->selected()); }
  void operator()(const CommandButton* button) { add(button->enabled()); }
  void operator()(const Frame* frame) { add(frame->enabled()); }
  void operator()(const Label* label) { add(label->caption() + (label->enabled() ? "" : "-")); }
  void operator()(const ListBox* list) {
    add(list->selectedIndex());
    for (const std::string& line : list->lines()) add(line);
  }
  void operator()(const DropDownList* list) { add(list->text() + (list->enabled() ? "" : "-")); }
};

Observed observe(test::Engineer& engineer, bool atHome) {
  Wizard& wizard = engineer.program.wizard;
  const WizardState& state = wizard.state;
  const Project& project = state.project;
  Writer out;
  for (const DesignedControl& one : designedControls(wizard.form)) std::visit(out, one.control);
  // Rows that do not count are part of it: a later reading may keep what they hold.
  for (const PropertyRecord& row : project.exportTable) {
    out.add(dataLine(row) + (row.hasHistory ? 'H' : '-') + (row.hasAlarmWatch ? 'A' : '-'));
    if (row.hasDeviceList) out.add("list");
    for (const std::string& name : row.devices.get()) out.add(name);
  }
  for (const HistoryRecord& row : project.historyTable) out.add(dataLine(row));
  for (const AlarmWatchRecord& row : project.alarmTable) {
    out.add(dataLine(row) + std::to_string(row.countThreshold));
  }
  for (const std::string& name : project.deviceNames) out.add(name);
  for (const long value :
       {long{project.exportCount}, long{project.historyCount}, long{project.alarmCount},
        long{project.historyInUse}, long{project.deviceNamesDefined}, long{state.projectDirEdited},
        long{state.localNameEdited}}) {
    out.add(value);
  }
  out.add(project.projectPath + state.localNameSuggestion + wizard.statusLine.message);

  Writer disk;
  disk.add(statusText(wizard) + dropWarning(state));
  if (atHome) {
    const Preview shown = preview(wizard);
    disk.add(shown.failure);
    for (const auto& [path, content] : shown.files) disk.add(path.native + '\n' + content);
  }
  return {out.text, disk.text};
}

}  // namespace

void BackAndAhead::start(test::Engineer& engineer, bool atHome) {
  before_ = takeSession(engineer.program.wizard, before_);
  wasAtHome_ = atHome;
  seen_ = observe(engineer, atHome);
}

SessionSnapshot BackAndAhead::fromDraft(Wizard& wizard, const SessionSnapshot& session) {
  // No list of names is left on disk, where somebody else may have changed it.
  const std::string& content = drafts_.write(wizard, {}, session, {});
  SessionSnapshot read = readDraft(wizard, content, page_).session;
  read.message = session.message;
  return read;
}

void BackAndAhead::compare(test::Engineer& engineer, bool atHome, bool diskChanged) {
  Wizard& wizard = engineer.program.wizard;
  if (wizard.state.quitInProgress) return;
  const std::size_t messages = engineer.messages.size();
  const SessionSnapshot after = takeSession(wizard, before_);
  const Observed then = observe(engineer, atHome);
  restoreSession(wizard, before_);
  const Observed back = observe(engineer, wasAtHome_);
  require(back.session == seen_.session, "a step back restores the session");
  require(diskChanged || back.disk == seen_.disk, "and what Done would write");
  restoreSession(wizard, fromDraft(wizard, after));
  const Observed ahead = observe(engineer, atHome);
  require(ahead.session == then.session, "a step ahead restores the session");
  require(ahead.disk == then.disk, "and what Done would then write");
  require(engineer.messages.size() == messages, "neither shows a message");
}

}  // namespace kova::fuzz
