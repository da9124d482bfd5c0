// SPDX-License-Identifier: MIT
#include "editing/alarm_panel.h"

#include <algorithm>
#include <array>

#include "core/form_fields.h"
#include "core/status.h"

namespace kova {
namespace {

/// False if all fields were already 0.
template <std::size_t count>
bool clear(const std::array<TextField*, count>& fields) {
  const bool changes = std::any_of(fields.begin(), fields.end(),
                                   [](const TextField* field) { return field->text() != "0"; });
  for (TextField* field : fields) field->setText("0");
  return changes;
}

void clearMask(Wizard& wizard) {
  Form1& form = wizard.form;
  if (clear(std::array{&form.almNormalText, &form.almMaskText})) reportMaskCleared(wizard);
}

void clearThresholds(Wizard& wizard) {
  Form1& form = wizard.form;
  const std::array limits = {&form.almHiText, &form.almLoText, &form.almHiWarnText,
                             &form.almLoWarnText};
  if (clear(limits)) reportThresholdsCleared(wizard);
}

}  // namespace

void AlarmWatchCheck_Click(Wizard& wizard) {
  wizard.form.AlarmWatchPanel.setEnabled(wizard.form.AlarmWatchCheck.value() >= 1);
}

void almHiText_GotFocus(Wizard& wizard) {
  clearMask(wizard);
}
void almHiWarnText_GotFocus(Wizard& wizard) {
  clearMask(wizard);
}
void almLoText_GotFocus(Wizard& wizard) {
  clearMask(wizard);
}
void almLoWarnText_GotFocus(Wizard& wizard) {
  clearMask(wizard);
}
void almMaskText_GotFocus(Wizard& wizard) {
  clearThresholds(wizard);
}
void almNormalText_GotFocus(Wizard& wizard) {
  clearThresholds(wizard);
}

void fillInAlarmSelections(Wizard& wizard, const std::string& lclName, const std::string& prpName) {
  const AlarmWatchRecord* row =
      findAlarm(wizard.state.project.alarmTable, wizard.state.project.alarmCount, lclName, prpName);
  if (row != nullptr) showRow(wizard.form, *row);
}

}  // namespace kova
