// SPDX-License-Identifier: MIT
#include "editing/process_property.h"

#include <algorithm>
#include <string>
#include <utility>

#include "core/status.h"
#include "editing/range_prefix.h"
#include "tables/number_text.h"

namespace kova {
namespace {

std::string sizeText(std::int16_t size, const std::string& format) {
  return format == "NULL" ? "0" : std::to_string(size);
}

PropertyRecord processRow(const Wizard& wizard, const ProcessTemplate& part,
                          const std::string& numSteps) {
  const Form1& form = wizard.form;
  PropertyRecord row;
  row.exportName = form.ExportName.text();
  row.localName = significantLocalName(wizard);
  row.propertyName = form.PropertyName.text() + part.suffix;
  row.outputSize = sizeText(part.outputSize, part.outputFormat);
  row.outputFormat = part.outputFormat;
  row.inputSize = sizeText(part.inputSize, part.inputFormat);
  row.inputFormat = part.inputFormat;
  row.access = part.access;
  row.numModules = form.NumDevices.text();
  row.description = rangePrefix("0", form.NumStepsText.text(), "") + part.descriptionPrefix +
                    form.PropertyDescription.text();
  row.numSteps = numSteps;
  return row;
}

/// A row has the base name or the name of one of the five sub-properties.
bool isTaken(const Wizard& wizard, bool isNew) {
  const Form1& form = wizard.form;
  const auto& parts = wizard.state.processTemplates;
  return !isNew || std::any_of(parts.begin(), parts.end(), [&](const ProcessTemplate& part) {
    return findPropertyIndex(wizard, form.PropertyName.text() + part.suffix) <
           wizard.state.exportCount;
  });
}

}  // namespace

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
    // The engineer who has cleared the field goes on typing.
    form.NumStepsText.selectText();
  }
}

void commitProcessProperty(Wizard& wizard, bool isNew) {
  WizardState& state = wizard.state;
  Form1& form = wizard.form;
  const std::string name = form.PropertyName.text();
  if (isTaken(wizard, isNew)) {
    return tell(wizard, "Please Remove Process Property " + name + " first");
  }
  const auto parts = static_cast<std::int16_t>(state.processTemplates.size());
  if (state.exportCount + parts > tableRows) return tell(wizard, tableFullMessage);
  const std::string numSteps = converted(FormValue::numSteps, form.NumStepsText.text(),
                                         [](double steps) { return plainNumberText(steps); });

  std::int32_t index = state.exportCount;
  for (const ProcessTemplate& part : state.processTemplates) {
    PropertyRecord& row = exportRow(wizard, index++);
    row = processRow(wizard, part, numSteps);
    form.PropertyList.add(listLine(row, row.description));
  }
  // Selected before the five are counted: the handlers that this sets off see the old count.
  form.PropertyList.select(state.exportCount);
  state.exportCount = static_cast<std::int16_t>(state.exportCount + parts);
  reportProcessCommit(wizard, name);
}

}  // namespace kova
