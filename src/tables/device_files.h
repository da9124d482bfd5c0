// SPDX-License-Identifier: MIT
// Files of device names: of the server, and of single properties.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tables/column_facts.h"
#include "tables/tagged_csv.h"

namespace kova {

/// Entry k is the name of device k; empty if it has no name yet. An empty array was never sized.
using DeviceNames = std::vector<std::string>;

/// Names that a row has in common with itself at other moments until it is edited.
class SharedNames {
 public:
  const DeviceNames& get() const {
    static const DeviceNames none;
    return names_ ? *names_ : none;
  }
  operator const DeviceNames&() const { return get(); }
  std::size_t size() const { return get().size(); }
  /// Names of its own. Valid until the object is copied.
  DeviceNames& edit() {
    if (!names_ || names_.use_count() > 1) names_ = std::make_shared<DeviceNames>(get());
    return *names_;
  }
  bool operator==(const SharedNames& other) const {
    return names_ == other.names_ || get() == other.get();
  }

 private:
  std::shared_ptr<DeviceNames> names_;
};

inline constexpr std::string_view deviceNumberTag = "DEVICE_NUMBER";
inline constexpr std::string_view deviceNameTag = "DEVICE_NAME";
/// The columns of the files in their order.
std::span<const ColumnFacts> deviceColumns();

/// Endings of the file names.
inline constexpr std::string_view devicesEnding = "-devices.csv";
inline constexpr std::string_view namesEnding = "-names.csv";
/// The file to which the server's device names are written.
inline constexpr std::string_view serverDevicesFile = "devices.csv";
/// Name of the file from which they are read.
std::string serverNamesFile(std::string_view localName);
/// Name of the file with the device names of one property.
std::string namesFile(std::string_view propertyName);

/// Replaces `devNames` by the names in a table, with entries from 0 to the number in `numDevices`.
/// Rows with other numbers are skipped. A failure ends the reading.
ReadResult ReadDevicesFile(std::string_view content, std::string_view numDevices,
                           DeviceNames& devNames);

/// Sets all entries from the lines (ended by CR LF) of the panel's text; entries without a line
/// become "DEVICE" and their number. Returns the number of entries.
std::int16_t UpdateDevicesFile(std::string_view panelText, DeviceNames& devNames);

/// Number of lines in the panel's text that are not empty and have no entry.
std::size_t linesBeyond(std::string_view panelText, const DeviceNames& devNames);

/// Writes the names, after giving each empty entry its default name. Throws Failure and leaves the
/// file on disk unchanged.
void WriteDevicesFile(const ReplaceFile& replace, const Path& file, DeviceNames& devNames);

/// Entry `index` as it is shown and written: its name, or "Device" and its number.
std::string displayName(const DeviceNames& devNames, std::size_t index);

}  // namespace kova
