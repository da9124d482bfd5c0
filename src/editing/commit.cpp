// SPDX-License-Identifier: MIT
#include "editing/commit.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include "core/data_formats.h"
#include "core/form_texts.h"
#include "core/status.h"
#include "editing/process_property.h"
#include "editing/range_prefix.h"
#include "tables/number_text.h"
#include "tables/row_rules.h"
#include "tables/value_failure.h"

namespace kova {
namespace {

/// Numbers of rows that the other tables have once a commit is through.
struct RowCounts {
  std::int16_t history = 0;
  std::int16_t alarm = 0;
};

/// Appends the form's rows to the other tables, where they count only once the commit says so: a
/// text that does not fit leaves the tables as they were.
RowCounts appendUncounted(Wizard& wizard) {
  WizardState& state = wizard.state;
  RowCounts counts{state.historyCount, state.alarmCount};
  if (wizard.form.HistoryCheck.ticked()) {
    AppendHistoryFile(state.historyTable, counts.history, historyForm(wizard));
  }
  if (wizard.form.AlarmWatchCheck.ticked()) {
    AppendAlarmWatchFile(state.alarmTable, counts.alarm, alarmForm(wizard));
  }
  return counts;
}

/// The row that has the form's three names, or null.
const HistoryRecord* historyRowOf(const WizardState& state, const HistoryForm& form) {
  const auto rows = liveRows(state.historyTable, state.historyCount);
  const auto found = std::find_if(rows.begin(), rows.end(), [&](const HistoryRecord& row) {
    return row.propertyName == form.propertyName && row.localName == form.localName &&
           row.exportName == form.exportName;
  });
  return found == rows.end() ? nullptr : &*found;
}

/// A commit of the form would make another row of it, if there were none.
bool differs(const HistoryForm& form, const HistoryRecord& row) {
  HistoryTable trial(1);
  std::int16_t count = 0;
  try {
    AppendHistoryFile(trial, count, form);
  } catch (const ValueFailure&) {
    return true;
  }
  HistoryRecord& made = trial.front();
  made.index = row.index;
  // Files of other programs write the format in capital letters.
  if (upperCase(made.format) == upperCase(row.format)) made.format = row.format;
  return made != row;
}

/// What the commit of the form is about to lose or to leave as it is.
CommitNotes notesOn(const Wizard& wizard) {
  const Form1& form = wizard.form;
  const WizardState& state = wizard.state;
  CommitNotes notes;
  if (form.HistoryCheck.ticked()) {
    const HistoryForm history = historyForm(wizard);
    const HistoryRecord* row = historyRowOf(state, history);
    notes.firstHistoryStays = row != nullptr && differs(history, *row);
  }
  notes.furtherAlarmRow =
      form.AlarmWatchCheck.ticked() &&
      findAlarm(state.alarmTable, state.alarmCount, significantLocalName(wizard),
                form.PropertyName.text()) != nullptr;
  return notes;
}

struct Refusal {
  std::string message;
  const TextField* field = nullptr;  ///< that the message names, if it names one
};

/// What stands against any commit of the form.
std::optional<Refusal> refusal(const Wizard& wizard, bool appendOnly, bool isNew) {
  const Form1& form = wizard.form;
  const std::string& name = form.PropertyName.text();
  if (form.ExportName.text().empty()) return {{"Not a valid Export Name", &form.ExportName}};
  if (form.LocalName.text().empty()) return {{"Not a valid Local Name", &form.LocalName}};
  if (name.empty()) return {{"Not a valid Property Name", &form.PropertyName}};
  if (appendOnly && !isNew) return {{"Property " + name + " already assigned"}};
  return std::nullopt;
}

/// Puts the focus where the engineer mends what was refused. Into some fields of the alarm panel
/// the focus comes by the engineer's own hand alone: it clears others.
void leadTo(const TextField& field) {
  if (field.onGotFocus) return;
  try {
    field.setFocus();
    field.selectText();
  } catch (const Failure&) {
    return;  // it is named all the same
  }
}

void refuse(const Wizard& wizard, const Refusal& refusal) {
  tell(wizard, refusal.message);
  if (refusal.field != nullptr) leadTo(*refusal.field);
}

std::string descriptionWithRange(const Form1& form) {
  const std::string& text = form.PropertyDescription.text();
  if (!isRange(form.MinValue.text(), form.MaxValue.text())) return text;
  return rangePrefix(form.MinValue.text(), form.MaxValue.text(), form.Units.text()) + text;
}

void fillFromForm(const Wizard& wizard, PropertyRecord& row) {
  const Form1& form = wizard.form;
  const std::string& outputName = selectedFormatName(wizard, form.OutputDataFormat);
  const std::string& inputName = selectedFormatName(wizard, form.InputDataFormat);
  row.exportName = form.ExportName.text();
  row.localName = significantLocalName(wizard);
  row.propertyName = form.PropertyName.text();
  row.outputSize = outputName == "NULL" ? "0" : form.OutputDataSize.text();
  row.outputFormat = outputName + arrayTypeSuffix(wizard);
  row.inputSize = inputName == "NULL" ? "0" : form.InputDataSize.text();
  row.inputFormat = inputName;
  row.access = form.AccessMode.text();
  row.numModules = form.NumDevices.text();
  row.description = descriptionWithRange(form);
  row.numSteps = "0";
}

void count(Wizard& wizard, PropertyRecord& row, const RowCounts& counts) {
  WizardState& state = wizard.state;
  state.historyCount = counts.history;
  state.alarmCount = counts.alarm;
  if (wizard.form.HistoryCheck.ticked()) {
    row.hasHistory = true;
    state.historyInUse = true;
  }
  if (wizard.form.AlarmWatchCheck.ticked()) row.hasAlarmWatch = true;
}

void takeDeviceList(const Wizard& wizard, PropertyRecord& row) {
  const Form1& form = wizard.form;
  if (!form.DeviceListCheck.ticked()) return;
  row.hasDeviceList = UpdateDevicesFile(form.deviceNamesInputText.text(), row.devices) > 0;
}

/// A free slot holds at most the device list that waits for this commit; a list that was prepared
/// for another name and given up must not slip into a property that has none.
void dropForgottenList(const Wizard& wizard, PropertyRecord& slot) {
  if (!wizard.form.DeviceListCheck.ticked()) slot = PropertyRecord{};
}

/// The number of devices shows as it would be read back; a text that is no number stays.
void showNumDevices(Wizard& wizard, std::int16_t index) {
  try {
    wizard.form.NumDevices.setText(signedNumberText(exportRow(wizard, index).numModules));
  } catch (const Failure&) {
    return;  // the row is committed all the same
  }
}

void commitProperty(Wizard& wizard, std::int16_t index, bool isNew) {
  WizardState& state = wizard.state;
  if (isNew && index >= tableRows) return tell(wizard, tableFullMessage);
  CommitNotes notes = notesOn(wizard);
  const RowCounts counts = appendUncounted(wizard);

  PropertyRecord& row = exportRow(wizard, index);
  if (isNew) dropForgottenList(wizard, row);
  fillFromForm(wizard, row);
  count(wizard, row, counts);
  if (wizard.form.DeviceListCheck.ticked()) {
    notes.linesBeyond = linesBeyond(wizard.form.deviceNamesInputText.text(), row.devices);
  }
  takeDeviceList(wizard, row);
  const std::string name = row.propertyName;
  const std::string line = listLine(row, wizard.form.PropertyDescription.text());
  if (isNew) {
    wizard.form.PropertyList.add(line);
    // Selected before it is counted: the handlers that this sets off see the old count.
    wizard.form.PropertyList.select(index);
    ++state.exportCount;
  } else {
    wizard.form.PropertyList.replace(index, line);
  }
  showNumDevices(wizard, index);
  reportCommit(wizard, name, isNew, notes);
}

std::string couldNotAdd(const Wizard& wizard, const ValueFailure& failure) {
  const std::string head = "Could not add " + wizard.form.PropertyName.text() + " : ";
  if (failure.value() == FormValue::historyIndex) {
    return head + "the history table has no free index";
  }
  return head + std::string(labelOf(wizard, failure.value())) + " is not a valid number";
}

}  // namespace

void updatePropertyList(Wizard& wizard, bool appendOnly) {
  const Form1& form = wizard.form;
  const std::int16_t index = findPropertyIndex(wizard, form.PropertyName.text());
  const bool isNew = index >= wizard.state.exportCount;
  if (const auto against = refusal(wizard, appendOnly, isNew)) return refuse(wizard, *against);
  try {
    if (form.ProcessCheck.ticked()) {
      commitProcessProperty(wizard, isNew);
    } else {
      commitProperty(wizard, index, isNew);
    }
  } catch (const ValueFailure& failure) {
    refuse(wizard, {couldNotAdd(wizard, failure), fieldOf(wizard, failure.value())});
  }
}

bool formDiffersFrom(const Wizard& wizard, const PropertyRecord& row) {
  const Form1& form = wizard.form;
  if (form.HistoryCheck.ticked() != row.hasHistory ||
      form.AlarmWatchCheck.ticked() != row.hasAlarmWatch ||
      form.DeviceListCheck.ticked() != row.hasDeviceList) {
    return true;
  }
  PropertyRecord committed = row;
  fillFromForm(wizard, committed);
  committed.numSteps = row.numSteps;  // of a process; the form shows none of an existing row
  // The commit puts a blank ahead of the number of devices.
  const auto same = [](std::string_view one, std::string_view other) {
    return stripBlanks(one) == stripBlanks(other);
  };
  const ExportTexts now = exportTexts(committed);
  const ExportTexts then = exportTexts(row);
  return !std::equal(now.begin(), now.end(), then.begin(), same);
}

}  // namespace kova
