// SPDX-License-Identifier: MIT
#include "core/project_on_disk.h"

#include <algorithm>
#include <span>
#include <tuple>

#include "core/wizard_state.h"

namespace kova {
namespace {

constexpr std::size_t columns = std::tuple_size_v<ExportTexts>;
// Where the names that tell rows apart stand among the columns.
constexpr std::size_t exportName = 0;
constexpr std::size_t propertyName = 2;
constexpr std::size_t usualRow = 96;  // characters

std::span<const PropertyRecord> liveRows(const ExportTable& table, std::int16_t count) {
  return std::span(table).first(static_cast<std::size_t>(count));
}

/// A reader, which drops the blanks around a field, takes both for the same.
bool readAlike(std::string_view one, std::string_view other) {
  return one == other || stripBlanks(one) == stripBlanks(other);
}

bool haveSameNames(const PackedTexts& held, std::size_t row, const ExportTexts& texts) {
  return held[row * columns + propertyName] == texts[propertyName] &&
         held[row * columns + exportName] == texts[exportName];
}

bool isHeld(const PackedTexts& held, std::size_t row, const ExportTexts& texts) {
  std::size_t index = row * columns;
  return std::all_of(texts.begin(), texts.end(),
                     [&](std::string_view text) { return readAlike(held[index++], text); });
}

void compareProperties(const WizardState& state, Unwritten& result) {
  const PackedTexts& held = state.onDisk.properties;
  const std::size_t heldRows = held.size() / columns;
  const auto rows = liveRows(state.exportTable, state.exportCount);
  std::size_t kept = 0;
  // Rows are taken out or appended, never put in between: those on disk stand first, in its order.
  for (std::size_t next = 0; kept < rows.size(); ++kept, ++next) {
    const ExportTexts texts = exportTexts(rows[kept]);
    while (next < heldRows && !haveSameNames(held, next, texts)) ++next;
    if (next == heldRows) break;
    if (!isHeld(held, next, texts)) ++result.properties;
  }
  result.properties += rows.size() - kept;
  result.removals += heldRows - kept;
}

/// Devices are known by their numbers. An entry that a reader has found no line for holds nothing.
void compareNames(const PackedTexts& held, const DeviceNames& names, Unwritten& result) {
  for (std::size_t device = 0; device < std::max(held.size(), names.size()); ++device) {
    if (device >= names.size()) {
      if (!held[device].empty()) ++result.removals;
    } else if (device >= held.size() || held[device] != names[device]) {
      ++result.deviceNames;
    }
  }
}

void compareNameLists(const WizardState& state, Unwritten& result) {
  const ProjectOnDisk& disk = state.onDisk;
  const PackedTexts nothing;
  for (const PropertyRecord& row : liveRows(state.exportTable, state.exportCount)) {
    if (!row.hasDeviceList) continue;
    const auto held = disk.nameLists.find(row.propertyName);
    compareNames(held == disk.nameLists.end() ? nothing : held->second, row.devices, result);
  }
}

}  // namespace

PackedTexts::PackedTexts(const ExportTable& exportTable, std::int16_t exportCount) {
  const auto rows = liveRows(exportTable, exportCount);
  text_.reserve(rows.size() * usualRow);
  starts_.reserve(rows.size() * columns + 1);
  for (const PropertyRecord& row : rows) {
    for (const std::string_view text : exportTexts(row)) add(text);
  }
}

PackedTexts::PackedTexts(const DeviceNames& names) {
  for (const std::string& name : names) add(name);
}

Unwritten findDroppable(const WizardState& state) {
  Unwritten result;
  compareProperties(state, result);
  compareNameLists(state, result);
  result.historyRows = static_cast<std::size_t>(state.historyCount - state.onDisk.historyRows);
  result.alarmRows = static_cast<std::size_t>(state.alarmCount - state.onDisk.alarmRows);
  return result;
}

Unwritten findUnwritten(const WizardState& state) {
  Unwritten result = findDroppable(state);
  if (!state.deviceNamesDefined) return result;
  compareNames(state.onDisk.deviceNames, state.deviceNames, result);
  return result;
}

}  // namespace kova
