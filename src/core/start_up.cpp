// SPDX-License-Identifier: MIT
#include "core/start_up.h"

#include "core/data_formats.h"
#include "core/environment_values.h"
#include "core/status.h"

namespace kova {
namespace {

std::array<std::string, 3> guidePromptTexts() {
  return {
      "Please Enter the Export Name under which you would like your device server to be known: ",
      "Please Enter the Local name for your device server process (or accept the suggestion): ",
      "Please Enter the number of device modules your device server will serve : "};
}

void setDefaultTexts(Form1& form) {
  form.NumDevices.setText("1");
  form.MaxValue.setText("100");
  form.MinValue.setText("0");
  form.Units.setText("none");
  form.InputDataFormat.setText("NULL");
  form.InputDataSize.setText("0");
  form.OutputDataSize.setText("1");
}

}  // namespace

void Form_Load(Wizard& wizard) {
  WizardState& state = wizard.state;
  Form1& form = wizard.form;
  const Environment& environment = wizard.platform.environment;
  fillCombos(wizard);
  state.homeDrive = homeDrive(environment).text;
  if (!state.homeDrive.empty()) form.ProjectDir.setText(state.homeDrive + pathSeparator);
  setDefaultTexts(form);
  state.project.deviceNames.assign(1, std::string());
  state.guideControls = {&form.ExportName, &form.LocalName, &form.NumDevices};
  state.guidePrompts = guidePromptTexts();
  reportStart(wizard, homeDrive(environment).notUsed + repositoryRoot(environment).notUsed);
}

}  // namespace kova
