// SPDX-License-Identifier: MIT
#include "editing/alarm_panel.h"

#include "tables/number_text.h"

namespace kova {
namespace {

void clearMask(Form1& form) {
  form.almNormalText.setText("0");
  form.almMaskText.setText("0");
}

void clearThresholds(Form1& form) {
  form.almHiText.setText("0");
  form.almLoText.setText("0");
  form.almHiWarnText.setText("0");
  form.almLoWarnText.setText("0");
}

}  // namespace

void AlarmWatchCheck_Click(Wizard& wizard) {
  wizard.form.AlarmWatchPanel.setEnabled(wizard.form.AlarmWatchCheck.value() >= 1);
}

void almHiText_GotFocus(Wizard& wizard) {
  clearMask(wizard.form);
}
void almHiWarnText_GotFocus(Wizard& wizard) {
  clearMask(wizard.form);
}
void almLoText_GotFocus(Wizard& wizard) {
  clearMask(wizard.form);
}
void almLoWarnText_GotFocus(Wizard& wizard) {
  clearMask(wizard.form);
}
void almMaskText_GotFocus(Wizard& wizard) {
  clearThresholds(wizard.form);
}
void almNormalText_GotFocus(Wizard& wizard) {
  clearThresholds(wizard.form);
}

void fillInAlarmSelections(Wizard& wizard, const std::string& lclName, const std::string& prpName) {
  const AlarmWatchRecord* row =
      findAlarm(wizard.state.alarmTable, wizard.state.alarmCount, lclName, prpName);
  if (row == nullptr) return;
  Form1& form = wizard.form;
  form.AlmSystemText.setText(plainNumberText(std::int32_t{row->alarmSystem}));
  form.almCountThreshText.setText(plainNumberText(std::int32_t{row->countThreshold}));
  form.almHiText.setText(plainNumberText(row->high));
  form.almLoText.setText(plainNumberText(row->low));
  form.almHiWarnText.setText(plainNumberText(row->highWarn));
  form.almLoWarnText.setText(plainNumberText(row->lowWarn));
  form.almMaskText.setText(row->mask);
  form.almNormalText.setText(row->normal);
}

}  // namespace kova
