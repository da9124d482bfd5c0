// SPDX-License-Identifier: MIT
// Guidance: the menu that offers it, and the dialog that walks a list of (field, prompt) pairs, one
// at a time, and writes all values into the fields at its end. It knows nothing of what they mean.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "controls/control_design.h"
#include "core/wizard.h"

namespace kova {

/// The dialog's controls and its state, which outlives the closing of its window.
struct ExportHelper {
  /// Steps that the dialog can hold.
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

/// The right button opens the menu over the frame of the server.
void Frame2_MouseDown(Wizard& wizard, std::int16_t button);
void prpGuide_Click(Wizard& wizard);

/// Opens the dialog on the three parameters of a device server.
void srvGuide_Click(Wizard& wizard, ExportHelper& helper);

/// When the dialog's window is loaded: its title.
void Form_Load(ExportHelper& helper);
void nextParam_Click(ExportHelper& helper);
void lastParam_Click(ExportHelper& helper);
void DoneParam_Click(Wizard& wizard, ExportHelper& helper);
void ParamText_KeyDown(Wizard& wizard, ExportHelper& helper, std::int16_t keyCode);

}  // namespace kova
