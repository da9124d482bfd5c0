// SPDX-License-Identifier: MIT
#include "core/program_end.h"

namespace kova {
namespace {

void giveEventsTheirTurn(const Wizard& wizard) {
  if (wizard.giveEventsTheirTurn) wizard.giveEventsTheirTurn();
}

}  // namespace

void quitApplication(Wizard& wizard, Window* keep) {
  if (wizard.state.quitInProgress) return;
  wizard.state.quitInProgress = true;
  const Window* survivor = keep;
  for (Window* window : wizard.windows) {
    if (!window->loaded()) continue;
    if (survivor == nullptr) survivor = window;
    if (survivor != window) window->unload();
    giveEventsTheirTurn(wizard);
  }
  giveEventsTheirTurn(wizard);
  if (wizard.endProcess) wizard.endProcess();
}

}  // namespace kova
