// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "core/data_formats.h"
#include "review/checks.h"
#include "tables/device_files.h"
#include "tables/number_text.h"
#include "tables/quoting.h"
#include "tables/row_rules.h"

namespace kova::checks {
namespace {

/// Visits each line of a table, with the texts and places of its columns.
template <class Visit>
void eachLine(const ProjectReading& project, std::string_view file, Visit visit) {
  const TableText& table = project.table(file);
  for (const TextRow& line : table.rows) {
    const auto text = [&](std::string_view tag) { return std::string(table.text(line, tag)); };
    const auto placeOf = [&](std::string_view tag) {
      return Place{file, line.line, table.cell(line, tag).column};
    };
    visit(text, placeOf);
  }
}

template <class IsWanted>
const PropertyRecord* findProperty(const ProjectReading& project, IsWanted isWanted) {
  const auto& rows = project.properties.rows;
  const auto found = std::find_if(rows.begin(), rows.end(), isWanted);
  return found == rows.end() ? nullptr : &*found;
}

/// The property of a history row.
const PropertyRecord* propertyOf(const ProjectReading& project, const HistoryRecord& row) {
  return findProperty(project, [&](const PropertyRecord& property) {
    return property.propertyName == row.propertyName && property.exportName == row.exportName;
  });
}

const PropertyRecord* propertyOf(const ProjectReading& project, const AlarmWatchRecord& row) {
  return findProperty(project, [&](const PropertyRecord& property) {
    return property.propertyName == row.propertyName && property.localName == row.localName;
  });
}

/// A text within a message, which would break off at an empty one.
std::string shown(const std::string& text) {
  return text.empty() ? quoted(text) : text;
}

/// How a row's format or size differs from its property's.
std::optional<std::string> differenceOf(const PropertyRecord& property, const std::string& format,
                                        std::int32_t size) {
  const std::string& full = property.outputFormat;
  const std::string name = full.substr(0, full.find('.'));
  // The row that Done adds for the property in the form has the format of the property itself.
  const std::string single = std::string(singleValueName(name)) + full.substr(name.size());
  const bool isSame = upperCase(format) == upperCase(single) || format == name;
  if (!isSame) {
    return "format " + shown(format) + ", but the property's " + shown(full) + " requires " +
           shown(single);
  }
  if (static_cast<double>(size) == textValue(property.outputSize)) return std::nullopt;
  return "size " + std::to_string(size) + ", but the property has " + shown(property.outputSize);
}

/// Visits each row of a table, with the places of its columns.
template <class Rows, class Visit>
void eachRow(const ProjectReading& project, std::string_view file, const TableReading<Rows>& table,
             Visit visit) {
  for (std::size_t row = 0; row < table.rows.size(); ++row) {
    visit(table.rows[row], [&, row](Tag<typename Rows::value_type> tag) {
      return project.placeOf(file, table.result, row, tag.text);
    });
  }
}

/// Reports each row with the key of an earlier one.
template <class Rows, class KeyOf>
void reportRepeated(const ProjectReading& project, const Report& report, std::string_view file,
                    const TableReading<Rows>& table, Tag<typename Rows::value_type> tag,
                    KeyOf keyOf) {
  std::map<std::string, std::size_t> lines;
  eachRow(project, file, table, [&](const auto& row, auto placeOf) {
    const Place place = placeOf(tag);
    const std::string key = keyOf(row);
    const auto [first, isNew] = lines.emplace(key, place.line);
    if (isNew) return;
    report(place, key + " is already in line " + std::to_string(first->second));
  });
}

bool isOwnName(const std::string& number, const std::string& name) {
  return !name.empty() && name != "Device" + signedNumberText(textValue(number)) &&
         name != "DEVICE" + signedNumberText(textValue(number));
}

/// Device files and the largest number that the wizard takes from each.
std::map<std::string, double> largestNumbers(const ProjectReading& project) {
  std::map<std::string, double> largest;
  for (const PropertyRecord& row : project.properties.rows) {
    const std::string file = project.codePage->toNative(namesFile(row.propertyName));
    largest[file] = textValue(row.numModules);
    largest[project.devicesFile] = textValue(row.numModules);
  }
  return largest;
}

/// Every property of the project is known by its name. Where reading stopped or a column is
/// missing, a row or a file may belong to a property that was not read.
bool knowsAllProperties(const ProjectReading& project) {
  const ReadResult& result = project.properties.result;
  return !result.stop && !result.onlyLineFeeds && hasAllColumns(project.table(exportsFileName));
}

void historyWithoutProperty(const ProjectReading& project, const Report& report) {
  if (!knowsAllProperties(project)) return;
  eachRow(project, historyFileName, project.history, [&](const HistoryRecord& row, auto placeOf) {
    if (propertyOf(project, row) != nullptr) return;
    report(placeOf(&HistoryRecord::propertyName),
           "no property " + shown(row.propertyName) + " of " + shown(row.exportName));
  });
}

void historyDiffers(const ProjectReading& project, const Report& report) {
  eachRow(project, historyFileName, project.history, [&](const HistoryRecord& row, auto placeOf) {
    const PropertyRecord* property = propertyOf(project, row);
    if (property == nullptr) return;
    if (storedLocalName(property->localName) != row.localName) {
      report(placeOf(&HistoryRecord::localName), "local name " + shown(row.localName) +
                                                     ", but the property has " +
                                                     shown(property->localName));
    } else if (const auto difference = differenceOf(*property, row.format, row.dataLength)) {
      report(placeOf(&HistoryRecord::format), row.propertyName + " has " + *difference);
    }
  });
}

void repeatedHistory(const ProjectReading& project, const Report& report) {
  reportRepeated(project, report, historyFileName, project.history, &HistoryRecord::propertyName,
                 [](const HistoryRecord& row) {
                   return row.exportName + ' ' + row.localName + ' ' + row.propertyName;
                 });
}

void repeatedIndex(const ProjectReading& project, const Report& report) {
  reportRepeated(project, report, historyFileName, project.history, &HistoryRecord::index,
                 [](const HistoryRecord& row) { return "index " + std::to_string(row.index); });
}

void alarmWithoutProperty(const ProjectReading& project, const Report& report) {
  if (!knowsAllProperties(project)) return;
  eachRow(project, alarmFileName, project.alarms, [&](const AlarmWatchRecord& row, auto placeOf) {
    if (propertyOf(project, row) != nullptr) return;
    report(placeOf(&AlarmWatchRecord::propertyName),
           "no property " + row.propertyName + " of " + row.localName);
  });
}

void alarmDiffers(const ProjectReading& project, const Report& report) {
  eachRow(project, alarmFileName, project.alarms, [&](const AlarmWatchRecord& row, auto placeOf) {
    const PropertyRecord* property = propertyOf(project, row);
    if (property == nullptr) return;
    if (const auto difference = differenceOf(*property, row.format, row.size)) {
      report(placeOf(&AlarmWatchRecord::format), row.propertyName + " has " + *difference);
    }
  });
}

void severalAlarms(const ProjectReading& project, const Report& report) {
  reportRepeated(
      project, report, alarmFileName, project.alarms, &AlarmWatchRecord::propertyName,
      [](const AlarmWatchRecord& row) { return row.localName + ' ' + row.propertyName; });
}

void namelessAlarm(const ProjectReading& project, const Report& report) {
  eachLine(project, alarmFileName, [&](auto text, auto placeOf) {
    if (text(tagOf(&AlarmWatchRecord::propertyName)).empty()) {
      report(placeOf(tagOf(&AlarmWatchRecord::propertyName)), "property name is missing");
    } else if (text(tagOf(&AlarmWatchRecord::localName)).empty()) {
      report(placeOf(tagOf(&AlarmWatchRecord::localName)), "local name is missing");
    }
  });
}

void unreadDevices(const ProjectReading& project, const Report& report) {
  if (project.devicesFile.empty() || project.files.contains(project.devicesFile)) return;
  eachLine(project, serverDevicesFile, [&, reported = false](auto text, auto placeOf) mutable {
    if (reported || !isOwnName(text(deviceNumberTag), text(deviceNameTag))) return;
    reported = true;
    report(placeOf(deviceNameTag),
           "device names are not read: " + project.codePage->fromNative(project.devicesFile) +
               " does not exist");
  });
}

void namesWithoutProperty(const ProjectReading& project, const Report& report) {
  if (!knowsAllProperties(project)) return;
  for (const auto& [name, content] : project.files) {
    if (!name.ends_with(namesEnding) || project.nameLists.contains(name)) continue;
    const std::string_view property(name.data(), name.size() - namesEnding.size());
    report({name}, "no property " + project.codePage->fromNative(property));
  }
}

void listTooLong(const ProjectReading& project, const Report& report) {
  for (const auto& [file, largest] : largestNumbers(project)) {
    eachLine(project, file, [&, limit = largest](auto text, auto placeOf) {
      const double number = textValue(text(deviceNumberTag));
      // A placeholder holds no name to lose.
      if (number >= 0 && number <= limit) return;
      if (!isOwnName(text(deviceNumberTag), text(deviceNameTag))) return;
      report(placeOf(deviceNumberTag), "device " + plainNumberText(number) +
                                           ", but the last device is " + plainNumberText(limit));
    });
  }
}

void repeatedDevice(const ProjectReading& project, const Report& report) {
  for (const auto& [file, content] : project.files) {
    if (kindOfFile(file) != TableKind::devices) continue;
    std::set<double> numbers;
    eachLine(project, file, [&](auto text, auto placeOf) {
      const double number = textValue(text(deviceNumberTag));
      if (numbers.insert(number).second) return;
      report(placeOf(deviceNumberTag), "device " + plainNumberText(number) + " already has a name");
    });
  }
}

using enum Severity;

constexpr auto crossTable = std::to_array<Rule>({
    {"history-without-property",
     warning,
     "A history row without a property",
     "The wizard does not show the row, but Done writes it, and the history server asks for a "
     "property that does not exist.",
     "Remove the row, or add the property.",
     {"history.csv", "MAGEQM,FIELD", "MAGEQM,FIELDS", "MAGEQM, FIELD"},
     historyWithoutProperty},
    {"history-differs",
     warning,
     "History row does not match its property",
     "The history server expects other values than the server has. Editing the property does not "
     "update the row.",
     "Correct the row, or remove it, open the project again and add the history again.",
     {"history.csv", "#0, 4,FLOAT.CHANNEL, 3600", "#0, 5,FLOAT.CHANNEL, 3600",
      "#0, 4,double, 3600"},
     historyDiffers},
    {"repeated-history",
     warning,
     "Two history rows for one property",
     "The panel shows the first, and the property is archived twice.",
     "Remove one of them.",
     {"history.csv", " 2,MAGNET,MAGEQM,CURRENT,#0, 4", " 2,MAGNET,MAGEQM,FIELD,#0, 4",
      " 2,MAGNET,MAGEQM,STATE,#0, 4,LONG.CHANNEL, 18000, 1000, 10,10%, 600, 1\r\n"
      " 3,MAGNET,MAGEQM,CURRENT,#0, 4"},
     repeatedHistory},
    {"repeated-index",
     warning,
     "Two history rows with one index",
     "The history server identifies its rows by the index.",
     "Give each row an index of its own.",
     {"history.csv", " 2,MAGNET", " 1,MAGNET", " 7,MAGNET"},
     repeatedIndex},
    {"alarm-without-property",
     warning,
     "An alarm watch row without a property",
     "The wizard does not show the row, but Done writes it, and the alarm server asks for a "
     "property that does not exist.",
     "Remove the row, or add the property.",
     {"almwatch.csv", "#0,STATE", "#0,STATES", "#0, STATE"},
     alarmWithoutProperty},
    {"alarm-differs",
     warning,
     "Alarm watch row does not match its property",
     "The alarm server expects other values than the server has. Edit adds a row and leaves this "
     "one.",
     "Correct the row.",
     {"almwatch.csv", "STATE, 4,LONG", "STATE, 4,FLOAT", "STATE,4,LONG"},
     alarmDiffers},
    {"several-alarms",
     note,
     "Several alarm watch rows for one property",
     "All of them are watched, but the panel shows only the first, so a change seems to be lost.",
     "Remove the outdated rows.",
     {"almwatch.csv", "MAGEQM,#0,STATE, 4,LONG.CHANNEL", "MAGEQM,#0,CURRENT, 4,FLOAT.CHANNEL",
      "MAGEQM,#1,STATE, 4,LONG.CHANNEL"},
     severalAlarms},
    {"nameless-alarm",
     error,
     "An alarm watch row lacks a name",
     "The row is skipped, and Done writes the table without it.",
     "Fill in the local name and the property.",
     {"almwatch.csv", "MAGEQM,#0,STATE", ",#0,STATE", "MAGEQM,,STATE"},
     namelessAlarm},
    {"unread-devices",
     note,
     "The server's device names are not read",
     "Done writes devices.csv, but the wizard reads the file named after the local name, which "
     "does not exist. Next time the panel shows no names, and leaving the number of devices makes "
     "Done replace them with default names.",
     "Copy devices.csv to the missing file that the finding names.",
     {"devices.csv", "", "DEVICE_NUMBER,DEVICE_NAME\r\n 0,QUAD.1\r\n",
      "DEVICE_NUMBER,DEVICE_NAME\r\n 0,Device 0\r\n"},
     unreadDevices},
    {"names-without-property",
     warning,
     "Device names of a property that does not exist",
     "The file is never read, and is backed up each time the project is opened.",
     "Delete the file, or correct its name.",
     {"FIELDS-names.csv", "", "DEVICE_NUMBER,DEVICE_NAME\r\n 0,PROBE.N\r\n", ""},
     namesWithoutProperty},
    {"list-too-long",
     error,
     "A device beyond the number of devices",
     "Its name is skipped, and Done writes the list without it.",
     "Correct the number of devices, or remove the line.",
     {"FIELD-names.csv", " 4,Device 4", " 5,PROBE.Y", " 4,PROBE.Y"},
     listTooLong},
    {"repeated-device",
     error,
     "Two names for one device",
     "The later one counts, and Done writes the list without the other.",
     "Give each device one line.",
     {"FIELD-names.csv", " 3,PROBE.W", " 2,PROBE.W", "3,PROBE.W"},
     repeatedDevice},
});

}  // namespace

std::span<const Rule> crossTableRules() {
  return crossTable;
}

}  // namespace kova::checks
