// SPDX-License-Identifier: MIT
#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "core/data_formats.h"
#include "review/field_words.h"
#include "review/looks.h"
#include "tables/device_files.h"
#include "tables/number_text.h"
#include "tables/row_rules.h"

namespace kova::looks {
namespace {

constexpr std::string_view numberTag = "DEVICE_NUMBER";
constexpr std::string_view nameTag = "DEVICE_NAME";

/// Looks at each line of a table with its text and the place of a column.
template <class LookAt>
void eachLine(const ProjectReading& project, std::string_view file, LookAt look) {
  const TableText& table = project.table(file);
  for (const TextRow& line : table.rows) {
    const auto text = [&](std::string_view tag) { return std::string(table.text(line, tag)); };
    const auto placeOf = [&](std::string_view tag) {
      return Place{file, line.line, table.cell(line, tag).column};
    };
    look(text, placeOf);
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

/// A row says otherwise than its property about format and size.
std::optional<std::string> differenceOf(const PropertyRecord& property, const std::string& format,
                                        std::int32_t size) {
  const std::string& whole = property.outputFormat;
  const std::string name = whole.substr(0, whole.find('.'));
  // The line that Done adds for the property in the form has the format of the property itself.
  const std::string single = std::string(singleValueName(name)) + whole.substr(name.size());
  const bool isSame = upperCase(format) == upperCase(single) || format == name;
  if (!isSame)
    return "format " + format + ", while " + single + " belongs to the property's " + whole;
  if (static_cast<double>(size) == textValue(property.outputSize)) return std::nullopt;
  return "size " + std::to_string(size) + ", while the property has " + property.outputSize;
}

/// The lines from which the rows of a table were read. Alarm rows without names have none.
class LinesOfRows {
 public:
  LinesOfRows(const ProjectReading& project, std::string_view file)
      : file_(file), table_(project.table(file)) {
    for (const TextRow& line : table_.rows) {
      const bool isSkipped = table_.kind == TableKind::alarms &&
                             (table_.text(line, tagOf(&AlarmWatchRecord::propertyName)).empty() ||
                              table_.text(line, tagOf(&AlarmWatchRecord::localName)).empty());
      if (!isSkipped) lines_.push_back(&line);
    }
  }
  /// Where a column of row `index` stands.
  Place placeOf(std::size_t index, std::string_view tag) const {
    const TextRow& line = *lines_.at(index);
    return {file_, line.line, table_.cell(line, tag).column};
  }

 private:
  std::string_view file_;
  const TableText& table_;
  std::vector<const TextRow*> lines_;
};

/// Reports each row whose key an earlier one has already.
template <class Rows, class KeyOf>
void reportRepeated(const ProjectReading& project, const Report& report, std::string_view file,
                    const Rows& rows, std::string_view tag, KeyOf keyOf) {
  const LinesOfRows places(project, file);
  std::map<std::string, std::size_t> lines;
  for (std::size_t index = 0; index < rows.size(); ++index) {
    const Place place = places.placeOf(index, tag);
    const std::string key = keyOf(rows[index]);
    const auto [first, isNew] = lines.emplace(key, place.line);
    if (isNew) continue;
    report(place, key + " is in line " + std::to_string(first->second) + " already");
  }
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

}  // namespace

void historyWithoutProperty(const ProjectReading& project, const Report& report) {
  const LinesOfRows places(project, historyFileName);
  for (std::size_t index = 0; index < project.history.rows.size(); ++index) {
    const HistoryRecord& row = project.history.rows[index];
    if (propertyOf(project, row) != nullptr) continue;
    report(places.placeOf(index, tagOf(&HistoryRecord::propertyName)),
           "no property " + row.propertyName + " of " + row.exportName);
  }
}

void historyDiffers(const ProjectReading& project, const Report& report) {
  const LinesOfRows places(project, historyFileName);
  for (std::size_t index = 0; index < project.history.rows.size(); ++index) {
    const HistoryRecord& row = project.history.rows[index];
    const PropertyRecord* property = propertyOf(project, row);
    if (property == nullptr) continue;
    const auto place = [&](std::string_view tag) { return places.placeOf(index, tag); };
    if (storedLocalName(property->localName) != row.localName) {
      report(place("Local Name"),
             "local name " + row.localName + ", while the property has " + property->localName);
    } else if (const auto difference = differenceOf(*property, row.format, row.dataLength)) {
      report(place(tagOf(&AlarmWatchRecord::format)), row.propertyName + " has " + *difference);
    }
  }
}

void repeatedHistory(const ProjectReading& project, const Report& report) {
  reportRepeated(project, report, historyFileName, project.history.rows,
                 tagOf(&HistoryRecord::propertyName), [](const HistoryRecord& row) {
                   return row.exportName + ' ' + row.localName + ' ' + row.propertyName;
                 });
}

void repeatedIndex(const ProjectReading& project, const Report& report) {
  reportRepeated(project, report, historyFileName, project.history.rows, "Index",
                 [](const HistoryRecord& row) { return "index " + std::to_string(row.index); });
}

void alarmWithoutProperty(const ProjectReading& project, const Report& report) {
  const LinesOfRows places(project, alarmFileName);
  for (std::size_t index = 0; index < project.alarms.rows.size(); ++index) {
    const AlarmWatchRecord& row = project.alarms.rows[index];
    if (propertyOf(project, row) != nullptr) continue;
    report(places.placeOf(index, tagOf(&AlarmWatchRecord::propertyName)),
           "no property " + row.propertyName + " of " + row.localName);
  }
}

void alarmDiffers(const ProjectReading& project, const Report& report) {
  const LinesOfRows places(project, alarmFileName);
  for (std::size_t index = 0; index < project.alarms.rows.size(); ++index) {
    const AlarmWatchRecord& row = project.alarms.rows[index];
    const PropertyRecord* property = propertyOf(project, row);
    if (property == nullptr) continue;
    if (const auto difference = differenceOf(*property, row.format, row.size)) {
      report(places.placeOf(index, tagOf(&AlarmWatchRecord::format)),
             row.propertyName + " has " + *difference);
    }
  }
}

void severalAlarms(const ProjectReading& project, const Report& report) {
  reportRepeated(
      project, report, alarmFileName, project.alarms.rows, tagOf(&AlarmWatchRecord::propertyName),
      [](const AlarmWatchRecord& row) { return row.localName + ' ' + row.propertyName; });
}

void namelessAlarm(const ProjectReading& project, const Report& report) {
  eachLine(project, alarmFileName, [&](auto text, auto placeOf) {
    if (text(tagOf(&AlarmWatchRecord::propertyName)).empty()) {
      report(placeOf(tagOf(&AlarmWatchRecord::propertyName)), "no property name");
    } else if (text(tagOf(&AlarmWatchRecord::localName)).empty()) {
      report(placeOf(tagOf(&AlarmWatchRecord::localName)), "no local name");
    }
  });
}

void unreadDevices(const ProjectReading& project, const Report& report) {
  if (project.devicesFile.empty() || project.files.contains(project.devicesFile)) return;
  eachLine(project, serverDevicesFile, [&, told = false](auto text, auto placeOf) mutable {
    if (told || !isOwnName(text(numberTag), text(nameTag))) return;
    told = true;
    report(placeOf(nameTag), "names of devices, but there is no " +
                                 project.codePage->fromNative(project.devicesFile) +
                                 " to read them from");
  });
}

void namesWithoutProperty(const ProjectReading& project, const Report& report) {
  for (const auto& [name, content] : project.files) {
    if (!name.ends_with(namesEnding) || project.nameLists.contains(name)) continue;
    const std::string_view property(name.data(), name.size() - namesEnding.size());
    report({name}, "no property " + project.codePage->fromNative(property));
  }
}

void listTooLong(const ProjectReading& project, const Report& report) {
  for (const auto& [file, largest] : largestNumbers(project)) {
    eachLine(project, file, [&, limit = largest](auto text, auto placeOf) {
      const double number = textValue(text(numberTag));
      if (number >= 0 && number <= limit) return;
      report(placeOf(numberTag),
             "device " + plainNumberText(number) + " of " + plainNumberText(limit) + " devices");
    });
  }
}

void repeatedDevice(const ProjectReading& project, const Report& report) {
  for (const auto& [file, content] : project.files) {
    if (kindOfFile(file) != TableKind::devices) continue;
    std::set<double> numbers;
    eachLine(project, file, [&](auto text, auto placeOf) {
      const double number = textValue(text(numberTag));
      if (numbers.insert(number).second) return;
      report(placeOf(numberTag), "device " + plainNumberText(number) + " is there already");
    });
  }
}

}  // namespace kova::looks
