// SPDX-License-Identifier: MIT
#include "wizard/wiring.h"

#include <utility>

#include "completion/done.h"
#include "core/project_open.h"
#include "core/start_up.h"
#include "editing/add_remove.h"
#include "editing/alarm_panel.h"
#include "editing/device_panel.h"
#include "editing/history_panel.h"
#include "editing/process_property.h"
#include "editing/property_form.h"
#include "editing/selection.h"
#include "identity/server_names.h"

namespace kova {
namespace {

/// Binds a handler of the main window to the wizard.
Handler on(Wizard& wizard, void (*handler)(Wizard&)) {
  return [&wizard, handler] { handler(wizard); };
}

void wireMainWindow(Wizard& wizard) {
  Form1& form = wizard.form;
  form.window.onLoad = on(wizard, Form_Load);
  form.Command1.onClick = on(wizard, Command1_Click);
  form.AddProperty.onClick = on(wizard, AddProperty_Click);
  form.RemoveProperty.onClick = on(wizard, RemoveProperty_Click);
  form.EditCmd.onClick = on(wizard, EditCmd_Click);
  form.PropertyList.onClick = on(wizard, PropertyList_Click);
  form.PropertyList.onDblClick = on(wizard, PropertyList_DblClick);
  form.PropertyName.onChange = on(wizard, PropertyName_Change);
  form.PropertyName.onClick = on(wizard, PropertyName_Click);
  form.InputDataFormat.onClick = on(wizard, InputDataFormat_Click);
  form.OutputDataSize.onChange = on(wizard, OutputDataSize_Change);
  form.ProcessCheck.onClick = on(wizard, ProcessCheck_Click);
  form.NumStepsText.onChange = on(wizard, NumStepsText_Change);
  form.HistoryCheck.onClick = on(wizard, HistoryCheck_Click);
  form.AlarmWatchCheck.onClick = on(wizard, AlarmWatchCheck_Click);
  form.almHiText.onGotFocus = on(wizard, almHiText_GotFocus);
  form.almHiWarnText.onGotFocus = on(wizard, almHiWarnText_GotFocus);
  form.almLoText.onGotFocus = on(wizard, almLoText_GotFocus);
  form.almLoWarnText.onGotFocus = on(wizard, almLoWarnText_GotFocus);
  form.almMaskText.onGotFocus = on(wizard, almMaskText_GotFocus);
  form.almNormalText.onGotFocus = on(wizard, almNormalText_GotFocus);
  form.DeviceListCheck.onClick = on(wizard, DeviceListCheck_Click);
  form.deviceNamesInputText.onClick = on(wizard, deviceNamesInputText_Click);
  form.deviceNamesInputText.onLostFocus = on(wizard, deviceNamesInputText_LostFocus);
  form.deviceNumberInputText.onChange = on(wizard, deviceNumberInputText_Change);
  form.NumDevices.onChange = on(wizard, NumDevices_Change);
  form.NumDevices.onLostFocus = on(wizard, NumDevices_LostFocus);
  form.ExportName.onChange = on(wizard, ExportName_Change);
  form.LocalName.onChange = on(wizard, LocalName_Change);
  form.LocalName.onClick = on(wizard, LocalName_Click);
  form.ProjectDir.onChange = on(wizard, ProjectDir_Change);
  form.ProjectDir.onClick = on(wizard, ProjectDir_Click);
  form.ServerOption.onClick = on(wizard, ServerOption_Click);
  form.Frame2.onMouseDown = [&wizard](std::int16_t button) { Frame2_MouseDown(wizard, button); };
  form.Label9.onClick = on(wizard, Label9_Click);
  form.prpGuide.onClick = on(wizard, prpGuide_Click);
}

void wireGuidedDialog(Wizard& wizard, ExportHelper& helper) {
  wizard.form.srvGuide.onClick = [&] { srvGuide_Click(wizard, helper); };
  helper.window.onLoad = [&] { Form_Load(helper); };
  helper.nextParam.onClick = [&] { nextParam_Click(helper); };
  helper.lastParam.onClick = [&] { lastParam_Click(helper); };
  helper.DoneParam.onClick = [&] { DoneParam_Click(wizard, helper); };
  helper.ParamText.onKeyDown = [&](std::int16_t key) { ParamText_KeyDown(wizard, helper, key); };
}

}  // namespace

SetupWizard::SetupWizard(const Platform& machine, MessageBox messageBox)
    : wizard(machine, std::move(messageBox)) {
  wizard.windows.push_back(&helper.window);
  wireMainWindow(wizard);
  wireGuidedDialog(wizard, helper);
}

void SetupWizard::start() {
  wizard.form.window.show();
}

}  // namespace kova
