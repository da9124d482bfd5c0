// SPDX-License-Identifier: MIT
// The device panel: a list of device names, one line per device, and the number of the selected
// line.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/wizard.h"

namespace kova {

/// Shows the names unchanged; empty names are empty lines.
void fillinDeviceNames(Wizard& wizard, const DeviceNames& devNames);

/// Line (from 0) at a caret position. Throws Failure if the position does not fit 16 bits.
std::int16_t findLineFromMultilineText(std::string_view textStr, std::size_t textLen);

/// Caret position at the start of a line; two beyond the text if there is no such line. Throws
/// Failure if it does not fit 16 bits.
std::int16_t findSelStartAtLine(std::string_view textStr, std::int16_t textline);

/// Stores the box in the server's device names if it shows the server's list.
void storeServerDeviceNames(Wizard& wizard);

void DeviceListCheck_Click(Wizard& wizard);
void ServerOption_Click(Wizard& wizard);
void deviceNamesInputText_Click(Wizard& wizard);
void deviceNamesInputText_LostFocus(Wizard& wizard);
void deviceNumberInputText_Change(Wizard& wizard);
void NumDevices_Change(Wizard& wizard);
void NumDevices_LostFocus(Wizard& wizard);

}  // namespace kova
