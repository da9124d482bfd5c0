// SPDX-License-Identifier: MIT
#include "identity/export_helper.h"

#include "core/status.h"

#include <string_view>

#include "identity/server_names.h"

namespace kova {
namespace {

constexpr auto design = std::to_array<DesignRow<ExportHelper>>({
    {&ExportHelper::nextParam,
     {"nextParam", ControlKind::commandButton, "", {"Next >", 'N'}, 0, {2100, 1830, 945, 405}}},
    {&ExportHelper::lastParam,
     {"lastParam", ControlKind::commandButton, "", {"< Back", 'B'}, 1, {1080, 1830, 945, 405}}},
    {&ExportHelper::DoneParam,
     {"DoneParam", ControlKind::commandButton, "", {"Done", 'D'}, 2, {3090, 1830, 975, 405}}},
    {&ExportHelper::ParamText,
     {"ParamText", ControlKind::textBox, "", "", 3, {90, 1320, 3915, 405}}},
    {&ExportHelper::helperLabel,
     {"helperLabel", ControlKind::label, "", "", 4, {60, 150, 3945, 1125}}},
});

constexpr std::string_view deviceServerTag = "Device Server";
constexpr std::size_t suggestedCharacters = 3;
constexpr std::size_t afterAnyText = 1024;

std::size_t current(const ExportHelper& helper) {
  return static_cast<std::size_t>(helper.paramIndex);
}

/// May depend on the text in the box; empty if there is no suggestion.
std::string getNextParameterSuggestion(std::string_view tag, std::string_view text,
                                       std::int16_t step) {
  if (tag != deviceServerTag) return {};
  if (step == 1) {
    return std::string(text.substr(0, suggestedCharacters)) + std::string(localNameEnding);
  }
  return step == 2 ? "1" : "";
}

/// Puts `text` into the box with the caret at its end, and the focus into the box. If the window is
/// not yet on screen it can't take the focus, and the box stays empty.
void fillBox(ExportHelper& helper, const std::string& text) {
  helper.ParamText.setText(helper.window.visible() ? text : "");
  if (!helper.window.visible()) return;
  helper.ParamText.setCaret(afterAnyText);
  try {
    helper.ParamText.setFocus();
  } catch (const Failure&) {
    helper.ParamText.setText("");
  }
}

void showStep(ExportHelper& helper, const std::string& text) {
  helper.helperLabel.setCaption(helper.paramPrompts.at(current(helper)));
  helper.lastParam.setEnabled(helper.paramIndex != 0);
  helper.nextParam.setEnabled(helper.paramIndex != helper.paramCount - 1);
  fillBox(helper, text);
}

/// Shows the current step with its suggestion, which depends on the text in the box.
void showParam(ExportHelper& helper) {
  showStep(helper,
           getNextParameterSuggestion(helper.paramTag, helper.ParamText.text(), helper.paramIndex));
}

void storeBox(ExportHelper& helper) {
  helper.paramValues.at(current(helper)) = helper.ParamText.text();
}

/// The stored values stay.
void resetInput(ExportHelper& helper) {
  helper.paramCount = 0;
  helper.paramControls.clear();
}

void loadParams(ExportHelper& helper, TextField& l, const std::string& c) {
  if (helper.paramControls.size() >= ExportHelper::maxParams) {
    throw Failure("the dialog has no room for another step");
  }
  helper.paramPrompts.at(helper.paramControls.size()) = c;
  helper.paramControls.push_back(&l);
  ++helper.paramCount;
}

void setTag(ExportHelper& helper, const std::string& t) {
  helper.paramTag = t;
}

void activateInput(ExportHelper& helper) {
  helper.paramIndex = 0;
  showParam(helper);
}

}  // namespace

ExportHelper::ExportHelper() {
  applyDesign(designedControls(*this));
}

std::vector<DesignedControl> designedControls(ExportHelper& helper) {
  return designedControls(helper, design);
}

void Frame2_MouseDown(Wizard& wizard, std::int16_t button) {
  if (button == Frame::rightButton) wizard.form.guide.popUp();
}

void prpGuide_Click(Wizard& wizard) {
  tell(wizard, "Property Information guidance is coming soon to a theater near you!");
}

void srvGuide_Click(Wizard& wizard, ExportHelper& helper) {
  resetInput(helper);
  for (std::size_t i = 0; i < wizard.state.guideControls.size(); ++i) {
    loadParams(helper, *wizard.state.guideControls[i], wizard.state.guidePrompts.at(i));
  }
  setTag(helper, std::string(deviceServerTag));
  helper.window.load();
  activateInput(helper);
  helper.window.show();
}

void Form_Load(ExportHelper& helper) {
  helper.window.title = helper.paramTag + " Parameters";
  helper.ParamText.setCaret(afterAnyText);
}

void nextParam_Click(ExportHelper& helper) {
  storeBox(helper);
  if (helper.paramIndex >= helper.paramCount - 1) return;
  ++helper.paramIndex;
  showParam(helper);
}

void lastParam_Click(ExportHelper& helper) {
  if (helper.paramIndex == 0) return;
  --helper.paramIndex;
  showStep(helper, helper.paramValues.at(current(helper)));
}

void DoneParam_Click(Wizard& wizard, ExportHelper& helper) {
  storeBox(helper);
  const TextField& devices = wizard.form.NumDevices;
  for (std::size_t i = 0; i < helper.paramControls.size(); ++i) {
    const std::string former = devices.text();  // an earlier value may have opened a project
    helper.paramControls[i]->setText(helper.paramValues.at(i));
    if (helper.paramControls[i] == &devices && devices.text() != former) {
      reportGuidedDevices(wizard, former, devices.text());
    }
  }
  helper.window.unload();
}

void ParamText_KeyDown(Wizard& wizard, ExportHelper& helper, std::int16_t keyCode) {
  if (keyCode != TextField::enterKey) return;
  if (helper.nextParam.enabled()) {
    nextParam_Click(helper);
  } else {
    DoneParam_Click(wizard, helper);
  }
}

}  // namespace kova
