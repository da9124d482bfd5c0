// SPDX-License-Identifier: MIT
#include "core/small_handlers.h"

namespace kova {

void ServerOption_Click(Wizard& wizard) {
  wizard.form.DeviceListCheck.setValue(0);
}

void Frame2_MouseDown(Wizard& wizard, std::int16_t button) {
  if (button == Frame::rightButton) wizard.form.guide.popUp();
}

void Label9_Click(Wizard& wizard) {
  wizard.form.MaxValue.setFocus();
}

void prpGuide_Click(Wizard& wizard) {
  tell(wizard, "Property Information guidance is coming soon to a theater near you!");
}

}  // namespace kova
