// SPDX-License-Identifier: MIT
#include "tables/project_on_disk.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <span>
#include <tuple>

#include "tables/project.h"
#include "tables/row_pairs.h"
#include "tables/row_rules.h"

namespace kova {
namespace {

constexpr std::size_t columns = std::tuple_size_v<ExportTexts>;
// The columns with the names that identify a row.
constexpr std::size_t exportName = columnOf<PropertyRecord>(&PropertyRecord::exportName);
constexpr std::size_t propertyName = columnOf<PropertyRecord>(&PropertyRecord::propertyName);
static_assert(std::max(exportName, propertyName) < columnOf<PropertyRecord>({}));
constexpr std::size_t usualRow = 96;  // characters

/// Both read the same, as readers strip the spaces around a field.
bool readAlike(std::string_view one, std::string_view other) {
  return one == other || stripBlanks(one) == stripBlanks(other);
}

bool haveSameNames(const PackedTexts& held, std::size_t row, const ExportTexts& texts) {
  return readAlike(held[row * columns + propertyName], texts[propertyName]) &&
         readAlike(held[row * columns + exportName], texts[exportName]);
}

std::string keyOf(std::string_view server, std::string_view property) {
  return std::string(stripBlanks(server)).append(1, '\0').append(stripBlanks(property));
}

bool isHeld(const PackedTexts& held, std::size_t row, const ExportTexts& texts) {
  std::size_t index = row * columns;
  return std::all_of(texts.begin(), texts.end(),
                     [&](std::string_view text) { return readAlike(held[index++], text); });
}

/// How many rows differ from the disk or are new; nothing unless the rows begin with those on disk
/// in the same order.
std::optional<std::size_t> rowsBeyond(const PackedTexts& held,
                                      std::span<const PropertyRecord> rows) {
  const std::size_t heldRows = held.size() / columns;
  if (rows.size() < heldRows) return std::nullopt;
  std::size_t beyond = rows.size() - heldRows;
  for (std::size_t row = 0; row < heldRows; ++row) {
    const ExportTexts texts = exportTexts(rows[row]);
    if (isHeld(held, row, texts)) continue;
    if (!haveSameNames(held, row, texts)) return std::nullopt;
    ++beyond;
  }
  return beyond;
}

RowPairs pairsOf(const PackedTexts& held, std::span<const PropertyRecord> rows) {
  std::vector<std::string> before;
  for (std::size_t text = 0; text < held.size(); text += columns) {
    before.push_back(keyOf(held[text + exportName], held[text + propertyName]));
  }
  std::vector<std::string> after;
  for (const PropertyRecord& row : rows) after.push_back(keyOf(row.exportName, row.propertyName));
  return pairRows(before, after);
}

void compareProperties(const Project& project, const ProjectOnDisk& disk, Unwritten& result) {
  const PackedTexts& held = disk.properties;
  const auto rows = liveRows(project.exportTable, project.exportCount);
  // Fast path: usually no row has been removed, and this runs after each user action.
  if (const auto beyond = rowsBeyond(held, rows)) {
    result.properties += *beyond;
    return;
  }
  const RowPairs pairs = pairsOf(held, rows);
  for (std::size_t row = 0; row < rows.size(); ++row) {
    const std::size_t partner = pairs.partners[row];
    const bool isThere = partner != noPartner && !pairs.moved[row];
    if (!isThere || !isHeld(held, partner, exportTexts(rows[row]))) ++result.properties;
  }
  result.removals += static_cast<std::size_t>(std::ranges::count(pairs.kept, false));
}

/// Whether to count what reading and writing a list changes by themselves: a device without a name
/// gets one, and names beyond the number of devices are dropped.
enum class ByItself : std::uint8_t { count, doNotCount };

/// Compares by device number. An entry for which the reader found no line is empty.
void compareNames(const PackedTexts& held, const DeviceNames& names, ByItself byItself,
                  Unwritten& result) {
  for (std::size_t device = 0; device < std::max(held.size(), names.size()); ++device) {
    const std::string_view is = device < held.size() ? held[device] : std::string_view();
    if (device >= names.size()) {
      if (!is.empty() && byItself == ByItself::count) ++result.removals;
    } else if (names[device].empty() && byItself == ByItself::doNotCount) {
      if (held.size() == 0 || !is.empty()) ++result.deviceNames;
    } else if (is.empty() || !readAlike(is, displayName(names, device))) {
      ++result.deviceNames;
    }
  }
}

void compareNameLists(const Project& project, const ProjectOnDisk& disk, ByItself byItself,
                      Unwritten& result) {
  const PackedTexts nothing;
  for (const PropertyRecord& row : liveRows(project.exportTable, project.exportCount)) {
    if (!row.hasDeviceList) continue;
    const auto held = disk.nameLists.find(row.propertyName);
    compareNames(held == disk.nameLists.end() ? nothing : held->second, row.devices, byItself,
                 result);
  }
}

/// Both are the same row once they are read.
template <class Row>
bool readAlike(const Row& one, const Row& other) {
  const auto& all = tableColumns<Row>;
  return std::all_of(all.begin(), all.end(), [&](const Column<Row>& column) {
    return std::visit(
        [&](auto member) {
          if constexpr (std::is_same_v<decltype(member), std::monostate>) {
            return true;
          } else if constexpr (std::is_same_v<decltype(member), std::string Row::*>) {
            return readAlike(std::string_view(one.*member), std::string_view(other.*member));
          } else {
            return one.*member == other.*member;
          }
        },
        column.member);
  });
}

std::string keyOf(const HistoryRecord& row) {
  return keyOf(row.exportName, row.localName) + keyOf({}, row.propertyName);
}

std::string keyOf(const AlarmWatchRecord& row) {
  return keyOf(row.localName, row.propertyName);
}

template <class Row>
RowPairs pairsOf(const std::vector<Row>& held, std::span<const Row> rows) {
  const auto key = [](const Row& row) { return keyOf(row); };
  std::vector<std::string> before;
  std::vector<std::string> after;
  std::transform(held.begin(), held.end(), std::back_inserter(before), key);
  std::transform(rows.begin(), rows.end(), std::back_inserter(after), key);
  return pairRows(before, after);
}

/// Rows that are new, changed or moved. Adds those that only the disk has to `removals`.
template <class Row>
std::size_t changedRows(const std::vector<Row>& held, std::span<const Row> rows,
                        std::size_t& removals) {
  const auto alike = [](const Row& one, const Row& other) { return readAlike(one, other); };
  // Fast path: usually rows have only been appended.
  if (rows.size() >= held.size() && std::equal(held.begin(), held.end(), rows.begin(), alike)) {
    return rows.size() - held.size();
  }
  const RowPairs pairs = pairsOf(held, rows);
  removals += static_cast<std::size_t>(std::ranges::count(pairs.kept, false));
  std::size_t changed = 0;
  for (std::size_t row = 0; row < rows.size(); ++row) {
    const std::size_t partner = pairs.partners[row];
    const bool stays = partner != noPartner && !pairs.moved[row];
    if (!stays || !readAlike(held[partner], rows[row])) ++changed;
  }
  return changed;
}

Unwritten rowsNotHeld(const Project& project, const ProjectOnDisk& disk) {
  Unwritten result;
  compareProperties(project, disk, result);
  // Done leaves the files of these two as they are where it has no rows for them.
  if (project.historyInUse) {
    result.historyRows = changedRows(
        disk.history, liveRows(project.historyTable, project.historyCount), result.removals);
  }
  if (project.alarmCount > 0) {
    result.alarmRows =
        changedRows(disk.alarms, liveRows(project.alarmTable, project.alarmCount), result.removals);
  }
  return result;
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

bool PackedTexts::holds(const DeviceNames& names) const {
  if (names.size() != size()) return false;
  for (std::size_t name = 0; name < names.size(); ++name) {
    if (names[name] != (*this)[name]) return false;
  }
  return true;
}

RowPairs propertyPairs(const Project& project, const ProjectOnDisk& disk) {
  return pairsOf(disk.properties, liveRows(project.exportTable, project.exportCount));
}

RowPairs historyPairs(const Project& project, const ProjectOnDisk& disk) {
  return pairsOf(disk.history, liveRows(project.historyTable, project.historyCount));
}

RowPairs alarmPairs(const Project& project, const ProjectOnDisk& disk) {
  return pairsOf(disk.alarms, liveRows(project.alarmTable, project.alarmCount));
}

PropertyRecord propertyOnDisk(const ProjectOnDisk& disk, std::size_t row) {
  PropertyRecord property;
  std::size_t text = row * columns;
  for (const Column<PropertyRecord>& column : tableColumns<PropertyRecord>) {
    const auto* member = std::get_if<std::string PropertyRecord::*>(&column.member);
    if (member != nullptr) property.** member = disk.properties[text++];
  }
  return property;
}

Unwritten findDroppable(const Project& project, const ProjectOnDisk& disk) {
  Unwritten result = rowsNotHeld(project, disk);
  compareNameLists(project, disk, ByItself::doNotCount, result);
  return result;
}

Unwritten findUnwritten(const Project& project, const ProjectOnDisk& disk) {
  Unwritten result = rowsNotHeld(project, disk);
  compareNameLists(project, disk, ByItself::count, result);
  if (!project.deviceNamesDefined) return result;
  compareNames(disk.deviceNames, project.deviceNames, ByItself::count, result);
  return result;
}

Unwritten findLostByReading(const Project& project, const ProjectOnDisk& disk, bool readsNames) {
  Unwritten result = findDroppable(project, disk);
  if (!project.deviceNamesDefined || !readsNames) return result;
  compareNames(disk.namesRead, project.deviceNames, ByItself::doNotCount, result);
  return result;
}

PackedTexts namesIn(const FileSystem& files, std::string_view folder, std::string_view file) {
  constexpr std::string_view noEnd = "32767";
  DeviceNames names;
  tablesIn(files, folder)(
      file, [&](std::string_view content) { return ReadDevicesFile(content, noEnd, names); });
  while (!names.empty() && names.back().empty()) names.pop_back();
  return PackedTexts(names);
}

}  // namespace kova
