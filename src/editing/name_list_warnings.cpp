// SPDX-License-Identifier: MIT
#include "editing/name_list_warnings.h"

#include <cstddef>
#include <string_view>

#include "tables/device_files.h"
#include "tables/quoting.h"

namespace kova {
namespace {

/// The list that the box edits; null if its text is not used.
const DeviceNames* listInBox(const Wizard& wizard) {
  const Form1& form = wizard.form;
  if (form.ServerOption.selected()) return &wizard.state.project.deviceNames;
  if (!form.DeviceListCheck.ticked() || form.ProcessCheck.ticked()) return nullptr;
  const std::int16_t index = findPropertyIndex(wizard, form.PropertyName.text());
  return index < tableRows ? &rowOf(wizard.state.project.exportTable, index).devices.get()
                           : nullptr;
}

/// Number of the last line that is not empty, counted from 1.
std::size_t lastName(std::string_view box) {
  constexpr std::string_view lineEnd = "\r\n";
  std::size_t last = 0;
  for (std::size_t line = 1; !box.empty(); ++line) {
    const auto end = std::min(box.find(lineEnd), box.size());
    if (end > 0) last = line;
    box.remove_prefix(std::min(end + lineEnd.size(), box.size()));
  }
  return last;
}

/// The names as they would be read back from their file.
DeviceNames readBack(DeviceNames names) {
  std::string file;
  WriteDevicesFile([&](const Path&, std::string_view content) { file = content; }, {}, names);
  DeviceNames read;
  ReadDevicesFile(file, std::to_string(names.size() - 1), read);
  return read;
}

std::string cutNames(const Wizard& wizard, DeviceNames names) {
  const std::string& box = wizard.form.deviceNamesInputText.text();
  if (box.find_first_of(",\"") == std::string::npos) return {};
  UpdateDevicesFile(box, names);
  const DeviceNames read = readBack(names);
  for (std::size_t k = 0; k < names.size(); ++k) {
    if (names[k].empty() || read[k] == stripBlanks(names[k])) continue;
    return "The name of device " + std::to_string(k) +
           (read[k].empty() ? " would be empty." : " would read as " + read[k] + '.');
  }
  return {};
}

}  // namespace

std::string nameListWarning(const Wizard& wizard) {
  const DeviceNames* const list = listInBox(wizard);
  if (list == nullptr || list->empty()) return {};
  if (lastName(wizard.form.deviceNamesInputText.text()) > list->size()) {
    return "The list has room for " + counted(list->size(), "name") +
           ": further lines are dropped.";
  }
  return cutNames(wizard, *list);
}

}  // namespace kova
