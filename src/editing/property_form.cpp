// SPDX-License-Identifier: MIT
#include "editing/property_form.h"

#include "editing/device_panel.h"
#include "tables/number_text.h"

namespace kova {

void PropertyName_Change(Wizard& wizard) {
  Form1& form = wizard.form;
  const std::int16_t row = findPropertyIndex(wizard, form.PropertyName.text());
  if (row < wizard.state.project.exportCount) return;
  form.DeviceListCheck.setValue(0);
  form.AlarmWatchCheck.setValue(0);
  form.HistoryCheck.setValue(0);
}

void PropertyName_Click(Wizard& wizard) {
  wizard.form.ProcessCheck.setValue(0);
  storeServerDeviceNames(wizard);
}

void InputDataFormat_Click(Wizard& wizard) {
  if (wizard.form.InputDataFormat.text() == "NULL") wizard.form.InputDataSize.setText("0");
}

void OutputDataSize_Change(Wizard& wizard) {
  wizard.form.ArrayTypeCombo.setEnabled(textValue(wizard.form.OutputDataSize.text()) > 1);
}

void Label9_Click(Wizard& wizard) {
  wizard.form.MaxValue.setFocus();
}

}  // namespace kova
