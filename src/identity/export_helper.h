// SPDX-License-Identifier: MIT
// Guidance: its menu, and the dialog that shows one prompt at a time and writes all values into
// their fields at its end. It does not depend on their meaning.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "controls/control_design.h"
#include "core/wizard.h"

namespace kova {

/// The dialog's controls and its state, which is kept when its window closes.
struct ExportHelper {
  /// Largest number of steps.
  static constexpr std::size_t maxParams = 51;

  ExportHelper();

  Window window;
  CommandButton nextParam, lastParam, DoneParam;
  TextField ParamText;
  Label helperLabel;

  std::vector<TextField*> paramControls;
  std::array<std::string, maxParams> paramPrompts;
  std::array<std::string, maxParams> paramValues;
  std::int16_t paramCount = 0;
  std::int16_t paramIndex = 0;
  std::string paramTag;
};

/// The dialog's controls with their design values.
std::vector<DesignedControl> designedControls(ExportHelper& helper);

/// A right click on the frame of the server opens the menu.
void Frame2_MouseDown(Wizard& wizard, std::int16_t button);
void prpGuide_Click(Wizard& wizard);

/// Opens the dialog for the three parameters of a device server.
void srvGuide_Click(Wizard& wizard, ExportHelper& helper);

/// Sets the title when the dialog's window is loaded.
void Form_Load(ExportHelper& helper);
void nextParam_Click(ExportHelper& helper);
void lastParam_Click(ExportHelper& helper);
void DoneParam_Click(Wizard& wizard, ExportHelper& helper);
void ParamText_KeyDown(Wizard& wizard, ExportHelper& helper, std::int16_t keyCode);

}  // namespace kova
