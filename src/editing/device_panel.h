// SPDX-License-Identifier: MIT
// The device panel: one list of device names at a time, a line a device, and the number of the
// selected line.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/wizard.h"

namespace kova {

/// Shows the names as they are, empty ones as empty lines.
void fillinDeviceNames(Wizard& wizard, const DeviceNames& devNames);

/// Line (from 0) at a caret position. Throws Failure if the position is no 16-bit number.
std::int16_t findLineFromMultilineText(std::string_view textStr, std::size_t textLen);

/// Caret position at the start of a line, up to two beyond the text for a line that is not there.
/// Throws Failure if it is no 16-bit number.
std::int16_t findSelStartAtLine(std::string_view textStr, std::int16_t textline);

/// Takes the box into the server's device names while it shows the server's list.
void storeServerDeviceNames(Wizard& wizard);

void DeviceListCheck_Click(Wizard& wizard);
void ServerOption_Click(Wizard& wizard);
void deviceNamesInputText_Click(Wizard& wizard);
void deviceNamesInputText_LostFocus(Wizard& wizard);
void deviceNumberInputText_Change(Wizard& wizard);
void NumDevices_Change(Wizard& wizard);
void NumDevices_LostFocus(Wizard& wizard);

}  // namespace kova
