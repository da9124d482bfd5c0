// SPDX-License-Identifier: MIT
// Files of device names: for the server as a whole and for single properties.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tables/column_facts.h"
#include "tables/tagged_csv.h"

namespace kova {

/// Entry k is the name of device k; an empty entry has no name yet. An array without entries has
/// never been sized.
using DeviceNames = std::vector<std::string>;

inline constexpr std::string_view deviceNumberTag = "DEVICE_NUMBER";
inline constexpr std::string_view deviceNameTag = "DEVICE_NAME";
/// The columns of the files in their order.
std::span<const ColumnFacts> deviceColumns();

/// What the names of these files end in.
inline constexpr std::string_view devicesEnding = "-devices.csv";
inline constexpr std::string_view namesEnding = "-names.csv";
/// The file that the server's device names are written to.
inline constexpr std::string_view serverDevicesFile = "devices.csv";
/// Bare name of the file that they are read from.
std::string serverNamesFile(std::string_view localName);
/// Bare name of the file with the device names of one property.
std::string namesFile(std::string_view propertyName);

/// Reads the names of a table. `devNames` gets the bounds 0 to the whole number in `numDevices` and
/// loses its old entries; rows beyond are skipped. The result counts the rows accepted; whatever
/// fails ends the reading.
ReadResult ReadDevicesFile(std::string_view content, std::string_view numDevices,
                           DeviceNames& devNames);

/// Brings all entries up to date from the panel's text, one line (ended by CR LF) an entry; entries
/// without a line become "DEVICE" and their number. Returns the number of entries.
std::int16_t UpdateDevicesFile(std::string_view panelText, DeviceNames& devNames);

/// Lines of the panel's text that hold something and have no entry.
std::size_t linesBeyond(std::string_view panelText, const DeviceNames& devNames);

/// Writes the names and stores the default name of each empty entry in the array as well. Throws
/// Failure; the file on disk is then as it was.
void WriteDevicesFile(const ReplaceFile& replace, const Path& file, DeviceNames& devNames);

/// Name by which entry `index` is shown and written: the entry, or "Device" and its number.
std::string displayName(const DeviceNames& devNames, std::size_t index);

}  // namespace kova
