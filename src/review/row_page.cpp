// SPDX-License-Identifier: MIT
#include "review/row_page.h"

#include <algorithm>

#include "completion/table_writer.h"
#include "core/form_fields.h"
#include "core/project_open.h"
#include "core/status.h"
#include "tables/field_columns.h"

namespace kova {
namespace {

bool hasProperty(const Project& project, const HistoryRecord& row) {
  return findPropertyIndex(project.exportTable, project.exportCount, row.exportName,
                           row.propertyName) < project.exportCount;
}

bool hasProperty(const Project& project, const AlarmWatchRecord& row) {
  const auto rows = liveRows(project.exportTable, project.exportCount);
  return std::any_of(rows.begin(), rows.end(), [&](const PropertyRecord& property) {
    return property.propertyName == row.propertyName &&
           storedLocalName(property.localName) == row.localName;
  });
}

/// The columns after the names, as "Tag value".
template <class Row>
std::string settingsOf(const Row& row) {
  std::string text;
  for (const Column<Row>& column : tableColumns<Row>) {
    const Member<Row> member = column.member;
    const bool isName = member == Member<Row>(&Row::propertyName) ||
                        member == Member<Row>(&Row::localName) || column.tag == "Export Name";
    if (isName) continue;
    text += (text.empty() ? "" : ", ") + std::string(column.tag) + ' ' + shownText(row, member);
  }
  return text;
}

template <class Row>
ReviewGroup groupOf(const Project& project, std::string_view file, const std::vector<Row>& table,
                    std::int16_t count) {
  ReviewGroup group;
  group.key = file;
  group.name = file;
  for (std::int16_t index = 0; index < count; ++index) {
    const Row& row = rowOf(table, index);
    ReviewLine line;
    line.key = std::to_string(index);
    const bool isOrphan = !hasProperty(project, row);
    line.texts = {row.propertyName, settingsOf(row), isOrphan ? "no property of this name" : ""};
    line.fullText = row.propertyName + ": " + line.texts[1] +
                    (isOrphan ? ". The project has no property of this name." : ".");
    if (isOrphan) line.style = Style::changed;
    if (!isOrphan) line.property = row.propertyName;
    group.lines.push_back(std::move(line));
  }
  std::stable_partition(group.lines.begin(), group.lines.end(),
                        [](const ReviewLine& line) { return line.property.empty(); });
  return group;
}

/// Replaces the file of the alarm watches by one without rows; the former one is backed up.
void writeEmptyAlarms(Wizard& wizard) {
  FileSystem& files = wizard.platform.files;
  const Path folder = files.path(projectDirectory(wizard));
  const Path file = files.path(projectFile(wizard.state.project, alarmFileName));
  // Nothing counts as known, so that whatever the file holds is backed up.
  ProjectOnDisk nothingKnown;
  TableWriter(files, wizard.platform.clock, folder, nothingKnown)
      .replace(file, headerLine<AlarmWatchRecord>());
  files.flushAll(folder);
  wizard.state.onDisk.alarms.clear();
  for (const auto& [name, state] : nothingKnown.states) {
    wizard.state.onDisk.states.insert_or_assign(name, state);
  }
}

bool confirmsEmptyFile(Wizard& wizard) {
  return wizard.messageBox(
             {.text = "This is the last alarm watch row, and Done leaves " +
                      std::string(alarmFileName) +
                      " as it is if there are none. Write the file now, without rows ?\r\nThe "
                      "current file is backed up first.",
              .buttons = Buttons::yesNo,
              .title = "Delete the last row?",
              .enter = Answer::no}) == Answer::yes;
}

}  // namespace

ReviewPage reviewRows(const Wizard& wizard) {
  const Project& project = wizard.state.project;
  ReviewPage page{.heading = "No property of this project has a history or an alarm watch.",
                  .columns = {"Property", "Settings", "Note"},
                  .groups = {}};
  if (project.historyCount > 0) {
    page.groups.push_back(
        groupOf(project, historyFileName, project.historyTable, project.historyCount));
  }
  if (project.alarmCount > 0) {
    page.groups.push_back(groupOf(project, alarmFileName, project.alarmTable, project.alarmCount));
  }
  if (!page.groups.empty()) {
    page.heading =
        "Rows that Done writes. Changes here are in memory until Done, and can be undone.";
    const bool returns =
        project.historyInUse &&
        findHistoryOf(project.historyTable, project.historyCount, formTexts(wizard)) == nullptr;
    if (returns) page.heading += " Done adds a history row for the property in the form.";
  }
  return page;
}

std::optional<ChosenRow> chosenRow(const Wizard& wizard, const std::string& group,
                                   const std::string& line) {
  if (line.empty()) return std::nullopt;
  const Project& project = wizard.state.project;
  const ChosenRow row{group == historyFileName ? RowTable::history : RowTable::alarms,
                      static_cast<std::int16_t>(std::stoi(line))};
  const bool isHistory = row.table == RowTable::history;
  const std::int16_t count = isHistory ? project.historyCount : project.alarmCount;
  if (row.index >= count) return std::nullopt;
  return row;
}

std::string propertyOf(const Wizard& wizard, const ChosenRow& row) {
  const Project& project = wizard.state.project;
  return row.table == RowTable::history ? rowOf(project.historyTable, row.index).propertyName
                                        : rowOf(project.alarmTable, row.index).propertyName;
}

bool hasProperty(const Wizard& wizard, const ChosenRow& row) {
  const Project& project = wizard.state.project;
  return row.table == RowTable::history
             ? hasProperty(project, rowOf(project.historyTable, row.index))
             : hasProperty(project, rowOf(project.alarmTable, row.index));
}

bool mayTakeFormSettings(const Wizard& wizard, const ChosenRow& row) {
  return wizard.form.PropertyName.text() == propertyOf(wizard, row);
}

bool deleteChosen(Wizard& wizard, const ChosenRow& row) {
  const Project& project = wizard.state.project;
  const bool empties = row.table == RowTable::alarms && project.alarmCount == 1 &&
                       !wizard.state.onDisk.alarms.empty();
  if (empties) {
    if (!confirmsEmptyFile(wizard)) return false;
    try {
      writeEmptyAlarms(wizard);
    } catch (const Failure& failure) {
      tell(wizard, "Could not write " + std::string(alarmFileName) + " : " +
                       wizard.platform.files.text(failure.what()));
      return false;
    }
  }
  deleteRow(wizard, row.table, row.index);
  return true;
}

void takeSettings(Wizard& wizard, const ChosenRow& row) {
  try {
    takeFormSettings(wizard, row.table, row.index);
  } catch (const ValueFailure& failure) {
    tell(wizard,
         "Could not change the row : " +
             (failure.text() == nullptr ? std::string(failure.what())
                                        : (wizard.form.*fieldOf(failure.text()).label).caption() +
                                              " is not a valid number"));
  }
}

void renameChosenProperty(Wizard& wizard, const std::string& name, const std::string& newName) {
  try {
    renameProperty(wizard, name, newName);
  } catch (const Failure& failure) {
    tell(wizard, "Could not rename " + name + " : " + failure.what());
  }
}

}  // namespace kova
