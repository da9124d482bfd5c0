// SPDX-License-Identifier: MIT
#include "editing/row_actions.h"

#include <algorithm>
#include <utility>

#include "core/form_fields.h"
#include "core/status.h"
#include "editing/add_remove.h"
#include "tables/field_columns.h"

namespace kova {
namespace {

template <class Row>
Row& existingRow(std::vector<Row>& table, std::int16_t count, std::int16_t index) {
  if (index < 0 || index >= count) throw Failure("the table has no such row");
  return table[static_cast<std::size_t>(index)];
}

/// Leaves an empty row after the active ones: a later reading keeps what it finds there.
template <class Row>
std::string removeRow(std::vector<Row>& table, std::int16_t& count, std::int16_t index) {
  std::string property = existingRow(table, count, index).propertyName;
  const auto place = table.begin() + index;
  std::move(place + 1, table.begin() + count, place);
  table[static_cast<std::size_t>(--count)] = Row{};
  return property;
}

/// The flags of the property's rows, and the ticks of the form: a tick that stays would bring the
/// row back with the next Edit.
void followTables(Wizard& wizard, const std::string& property) {
  Project& project = wizard.state.project;
  Form1& form = wizard.form;
  for (std::int16_t index = 0; index < project.exportCount; ++index) {
    PropertyRecord& row = exportRow(wizard, index);
    if (row.propertyName != property) continue;
    row.hasHistory =
        PrpIsInHistoryTable(project.historyTable, project.historyCount, row.exportName, property);
    row.hasAlarmWatch = PrpIsWatchTable(project.alarmTable, project.alarmCount, property);
    const bool isShown =
        form.PropertyName.text() == property && form.ExportName.text() == row.exportName;
    if (!isShown) continue;
    form.HistoryCheck.setValue(row.hasHistory ? 1 : 0);
    form.AlarmWatchCheck.setValue(row.hasAlarmWatch ? 1 : 0);
  }
  refreshStatus(wizard);
}

RowPairs pairsOf(const Wizard& wizard, RowTable table) {
  const WizardState& state = wizard.state;
  switch (table) {
    case RowTable::properties:
      return propertyPairs(state.project, state.onDisk);
    case RowTable::history:
      return historyPairs(state.project, state.onDisk);
    case RowTable::alarms:
      break;
  }
  return alarmPairs(state.project, state.onDisk);
}

std::optional<std::int16_t> partnerIn(const RowPairs& pairs, std::size_t onDisk) {
  const auto partner = std::find(pairs.partners.begin(), pairs.partners.end(), onDisk);
  if (partner == pairs.partners.end()) return std::nullopt;
  return static_cast<std::int16_t>(partner - pairs.partners.begin());
}

/// Where to insert a row of the disk: after the row that it follows there.
std::int16_t placeFor(const RowPairs& pairs, std::size_t onDisk) {
  while (onDisk-- > 0) {
    if (const auto before = partnerIn(pairs, onDisk)) return static_cast<std::int16_t>(*before + 1);
  }
  return 0;
}

/// Makes room for a row at a place. `used` rows keep their content, as far as the table has room.
template <class Row>
Row& insertRow(std::vector<Row>& table, std::int32_t used, std::int16_t place) {
  const std::int32_t kept = std::min<std::int32_t>(used, tableRows - 1);
  rowOf(table, kept);
  const auto row = table.begin() + place;
  std::move_backward(row, table.begin() + kept, table.begin() + kept + 1);
  *row = Row{};
  return *row;
}

/// Replaces the partner, or inserts the row at the place.
template <class Row>
void putBackRow(std::vector<Row>& table, std::int16_t& count, const Row& row,
                const std::optional<std::int16_t>& partner, std::int16_t place) {
  if (!partner) checkRoom(count);
  Row& target =
      partner ? table[static_cast<std::size_t>(*partner)] : insertRow(table, count, place);
  target = row;
  if (!partner) ++count;
}

void putBackProperty(Wizard& wizard, PropertyRecord held,
                     const std::optional<std::int16_t>& partner, std::int16_t place) {
  Project& project = wizard.state.project;
  ListBox& list = wizard.form.PropertyList;
  if (project.exportCount > 0) held.numModules = exportRow(wizard, 0).numModules;
  std::string line = listLine(held, held.description);
  if (partner) {
    PropertyRecord& row = exportRow(wizard, *partner);
    held.hasDeviceList = row.hasDeviceList;
    held.devices = row.devices;
    row = std::move(held);
    return list.replace(*partner, line);
  }
  checkRoom(project.exportCount);
  // The pending row after the active ones moves along.
  insertRow(project.exportTable, project.exportCount + 1, place) = std::move(held);
  ++project.exportCount;
  list.insert(place, std::move(line));
}

template <class Row>
void rename(std::vector<Row>& table, std::int16_t count, const std::string& name,
            const std::string& newName, std::string Row::*server, const std::string& serverName) {
  for (std::int16_t index = 0; index < count; ++index) {
    Row& row = table[static_cast<std::size_t>(index)];
    if (row.propertyName == name && row.*server == serverName) row.propertyName = newName;
  }
}

}  // namespace

void putBack(Wizard& wizard, RowTable table, std::size_t onDisk) {
  Project& project = wizard.state.project;
  const ProjectOnDisk& disk = wizard.state.onDisk;
  const RowPairs pairs = pairsOf(wizard, table);
  if (onDisk >= pairs.kept.size()) throw Failure("the disk has no such row");
  const auto partner = partnerIn(pairs, onDisk);
  const std::int16_t place = placeFor(pairs, onDisk);
  std::string property;
  if (table == RowTable::properties) {
    const PropertyRecord row = propertyOnDisk(disk, onDisk);
    property = row.propertyName;
    putBackProperty(wizard, row, partner, place);
  } else if (table == RowTable::history) {
    property = disk.history[onDisk].propertyName;
    putBackRow(project.historyTable, project.historyCount, disk.history[onDisk], partner, place);
  } else {
    property = disk.alarms[onDisk].propertyName;
    putBackRow(project.alarmTable, project.alarmCount, disk.alarms[onDisk], partner, place);
  }
  followTables(wizard, property);
}

void deleteRow(Wizard& wizard, RowTable table, std::int16_t index) {
  Project& project = wizard.state.project;
  if (table == RowTable::properties) {
    existingRow(project.exportTable, project.exportCount, index);
    removeProperty(wizard, index);
    return refreshStatus(wizard);
  }
  const bool isHistory = table == RowTable::history;
  followTables(wizard, isHistory ? removeRow(project.historyTable, project.historyCount, index)
                                 : removeRow(project.alarmTable, project.alarmCount, index));
}

void takeFormSettings(Wizard& wizard, RowTable table, std::int16_t index) {
  Project& project = wizard.state.project;
  const FormTexts form = formTexts(wizard);
  if (table == RowTable::history) {
    HistoryRecord& row = existingRow(project.historyTable, project.historyCount, index);
    HistoryRecord made = historyRow(form);
    made.index = row.index;
    made.exportName = row.exportName;
    made.localName = row.localName;
    made.propertyName = row.propertyName;
    row = std::move(made);
  } else {
    AlarmWatchRecord& row = existingRow(project.alarmTable, project.alarmCount, index);
    AlarmWatchRecord made = alarmRow(form);
    made.localName = row.localName;
    made.propertyName = row.propertyName;
    row = std::move(made);
  }
  refreshStatus(wizard);
}

void renumberHistory(Wizard& wizard) {
  Project& project = wizard.state.project;
  for (std::int16_t index = 0; index < project.historyCount; ++index) {
    rowOf(project.historyTable, index).index = static_cast<std::int16_t>(index + 1);
  }
  refreshStatus(wizard);
}

void renameProperty(Wizard& wizard, const std::string& name, const std::string& newName) {
  Project& project = wizard.state.project;
  Form1& form = wizard.form;
  const std::int16_t index = findPropertyIndex(wizard, name);
  if (index >= project.exportCount) throw Failure("the server has no such property");
  if (newName.empty()) throw Failure("the new name is empty");
  if (findPropertyIndex(wizard, newName) < project.exportCount) {
    throw Failure("the server already has a property of this name");
  }
  PropertyRecord& row = exportRow(wizard, index);
  rename(project.historyTable, project.historyCount, name, newName, &HistoryRecord::exportName,
         row.exportName);
  rename(project.alarmTable, project.alarmCount, name, newName, &AlarmWatchRecord::localName,
         storedLocalName(row.localName));
  row.propertyName = newName;
  form.PropertyList.replace(index, listLine(row, row.description));
  // Typing the name would clear the ticks, as no row had it.
  if (form.PropertyName.text() == name) {
    TextField::State state = form.PropertyName.state({});
    state.text = std::make_shared<const std::string>(newName);
    form.PropertyName.setState(state);
    run(form.PropertyName.notifyView);
  }
  refreshStatus(wizard);
}

}  // namespace kova
