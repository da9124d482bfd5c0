// SPDX-License-Identifier: MIT
#include "review/change_page.h"

#include <algorithm>
#include <optional>

#include "core/status.h"
#include "editing/row_actions.h"

namespace kova {
namespace {

std::optional<RowTable> tableOf(std::string_view file) {
  if (file == exportsFileName) return RowTable::properties;
  if (file == historyFileName) return RowTable::history;
  if (file == alarmFileName) return RowTable::alarms;
  return std::nullopt;
}

std::string namesOf(const PropertyRecord& row) {
  return row.exportName + ' ' + row.propertyName;
}
std::string namesOf(const HistoryRecord& row) {
  return row.exportName + ' ' + row.localName + ' ' + row.propertyName;
}
std::string namesOf(const AlarmWatchRecord& row) {
  return row.localName + ' ' + row.propertyName;
}

/// The names of a row on disk, as the key of a line has them.
std::string namesOnDisk(const ProjectOnDisk& disk, RowTable table, std::size_t row) {
  if (table == RowTable::properties) return namesOf(propertyOnDisk(disk, row));
  return table == RowTable::history ? namesOf(disk.history[row]) : namesOf(disk.alarms[row]);
}

RowPairs pairsOf(const WizardState& state, RowTable table) {
  if (table == RowTable::properties) return propertyPairs(state.project, state.onDisk);
  return table == RowTable::history ? historyPairs(state.project, state.onDisk)
                                    : alarmPairs(state.project, state.onDisk);
}

/// Row of the disk, from 0. What the wizard has read may lack rows of the file.
std::optional<std::size_t> rowOnDisk(const Wizard& wizard, const std::string& file,
                                     const ReviewLine& line) {
  const auto table = tableOf(file);
  if (!table || line.before == 0) return std::nullopt;
  const RowPairs pairs = pairsOf(wizard.state, *table);
  if (line.after > 0) {
    const bool isRow = line.after <= pairs.partners.size();
    const std::size_t partner = isRow ? pairs.partners[line.after - 1] : noPartner;
    return partner == noPartner ? std::nullopt : std::optional(partner);
  }
  const auto matches = [&](std::size_t row) {
    return !pairs.kept[row] && namesOnDisk(wizard.state.onDisk, *table, row) == line.key;
  };
  if (line.before <= pairs.kept.size() && matches(line.before - 1)) return line.before - 1;
  for (std::size_t row = 0; row < pairs.kept.size(); ++row) {
    if (matches(row)) return row;
  }
  return std::nullopt;
}

}  // namespace

bool mayPutBack(const Wizard& wizard, const std::string& file, const ReviewLine& line) {
  return rowOnDisk(wizard, file, line).has_value();
}

bool mayLeaveOut(const Wizard& wizard, const std::string& file, const ReviewLine& line) {
  const auto table = tableOf(file);
  if (!table || line.before > 0) return false;
  // Done itself adds the history row of the property in the form.
  return line.after > 0 && line.after <= pairsOf(wizard.state, *table).partners.size();
}

void putBackChosen(Wizard& wizard, const std::string& file, const ReviewLine& line) {
  const auto row = rowOnDisk(wizard, file, line);
  if (!row) return;
  try {
    putBack(wizard, *tableOf(file), *row);
  } catch (const Failure& failure) {
    tell(wizard, "Could not put back " + line.key + " : " + failure.what());
  }
}

void leaveOutChosen(Wizard& wizard, const std::string& file, const ReviewLine& line) {
  if (!mayLeaveOut(wizard, file, line)) return;
  deleteRow(wizard, *tableOf(file), static_cast<std::int16_t>(line.after - 1));
}

}  // namespace kova
