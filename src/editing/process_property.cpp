// SPDX-License-Identifier: MIT
#include "editing/process_property.h"

#include "tables/number_text.h"

namespace kova {

void ProcessCheck_Click(Wizard& wizard) {
  Form1& form = wizard.form;
  const bool isProcess = form.ProcessCheck.ticked();
  form.NumStepsText.setEnabled(isProcess);
  form.NumStepsLabel.setEnabled(isProcess);
  form.NumStepsText.setText(isProcess ? "1" : "0");
}

void NumStepsText_Change(Wizard& wizard) {
  Form1& form = wizard.form;
  if (form.ProcessCheck.ticked() && textValue(form.NumStepsText.text()) < 1) {
    form.NumStepsText.setText("1");
    // The engineer has cleared the field and is still typing.
    form.NumStepsText.selectText();
  }
}

}  // namespace kova
