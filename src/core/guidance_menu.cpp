// SPDX-License-Identifier: MIT
#include "core/guidance_menu.h"

namespace kova {

void Frame2_MouseDown(Wizard& wizard, std::int16_t button) {
  if (button == Frame::rightButton) wizard.form.guide.popUp();
}

void prpGuide_Click(Wizard& wizard) {
  tell(wizard, "Property Information guidance is coming soon to a theater near you!");
}

}  // namespace kova
