// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "core/data_formats.h"
#include "review/checks.h"
#include "tables/device_files.h"
#include "tables/number_text.h"
#include "tables/process_templates.h"
#include "tables/quoting.h"
#include "tables/range_prefix.h"
#include "tables/row_rules.h"

namespace kova::checks {
namespace {

constexpr std::string_view nullFormat = "NULL";

/// Visits each row that the wizard has read, with the places of its columns.
template <class Visit>
void eachProperty(const ProjectReading& project, Visit visit) {
  const TableReading<ExportTable>& table = project.properties;
  for (std::size_t row = 0; row < table.rows.size(); ++row) {
    visit(table.rows[row], [&, row](Tag<PropertyRecord> tag) {
      return project.placeOf(exportsFileName, table.result, row, tag.text);
    });
  }
}

/// Reports each text, as `shown`, that differs from the last row's, once.
template <class Shown>
void reportOthers(const ProjectReading& project, const Report& report, Tag<PropertyRecord> tag,
                  Shown shown) {
  if (project.properties.rows.empty()) return;
  const std::string last = shown(project.properties.rows.back());
  std::set<std::string> reported{last};
  eachProperty(project, [&](const PropertyRecord& row, auto placeOf) {
    const auto& text = shown(row);
    if (!reported.insert(text).second) return;
    report(placeOf(tag), quoted(text) + ", but the last row has " + quoted(last));
  });
}

std::string_view formatName(std::string_view format) {
  return format.substr(0, format.find('.'));
}

bool isFormat(std::string_view name) {
  return name == nullFormat || getFormatIndex(name) != getFormatIndex(nullFormat);
}

/// The name in the case that makes it a format, or nothing.
std::string formatInOtherCase(std::string_view name) {
  const std::string upper = upperCase(name);
  const std::string lower = lowerCase(name);
  return isFormat(upper) ? upper : isFormat(lower) ? lower : std::string();
}

/// Visits each format whose name is not in the list.
template <class Visit>
void eachUnknownFormat(const ProjectReading& project, Visit visit) {
  eachProperty(project, [&](const PropertyRecord& row, auto placeOf) {
    const auto one = [&](const std::string& format, Tag<PropertyRecord> tag) {
      const std::string_view name = formatName(format);
      if (!name.empty() && !isFormat(name)) visit(placeOf(tag), name);
    };
    one(row.outputFormat, &PropertyRecord::outputFormat);
    one(row.inputFormat, &PropertyRecord::inputFormat);
  });
}

bool isBrokenRange(const std::string& description) {
  const DescriptionParts parts = parseDescription(description);
  if (!parts.hasPrefix) return description.starts_with('[');
  if (!description.starts_with('[') || !parts.minimum || !parts.maximum) return true;
  return !isNumber(*parts.minimum) || !isNumber(*parts.maximum);
}

/// Name of the process that a row is part of, and the row's suffix; or nothing.
std::pair<std::string, std::string_view> processOf(const PropertyRecord& row) {
  if (textValue(row.numSteps) <= 0) return {};
  for (const ProcessTemplate& part : processTemplates) {
    const std::string& name = row.propertyName;
    if (!name.ends_with(part.suffix)) continue;
    return {name.substr(0, name.size() - part.suffix.size()), part.suffix};
  }
  return {};
}

void namelessProperty(const ProjectReading& project, const Report& report) {
  if (!hasAllColumns(project.table(exportsFileName))) return;
  eachProperty(project, [&](const PropertyRecord& row, auto placeOf) {
    if (row.exportName.empty())
      report(placeOf(&PropertyRecord::exportName), "export name is missing");
    if (row.localName.empty()) report(placeOf(&PropertyRecord::localName), "local name is missing");
    if (row.propertyName.empty())
      report(placeOf(&PropertyRecord::propertyName), "property name is missing");
  });
}

void repeatedProperty(const ProjectReading& project, const Report& report) {
  if (!hasAllColumns(project.table(exportsFileName))) return;
  std::map<std::pair<std::string, std::string>, std::size_t> lines;
  eachProperty(project, [&](const PropertyRecord& row, auto placeOf) {
    const Place place = placeOf(&PropertyRecord::propertyName);
    const auto [first, isNew] =
        lines.emplace(std::pair(row.exportName, row.propertyName), place.line);
    if (isNew) return;
    report(place, row.propertyName + " is already in line " + std::to_string(first->second));
  });
}

void otherCase(const ProjectReading& project, const Report& report) {
  std::map<std::string, std::string> names;
  std::size_t index = 0;
  eachProperty(project, [&](const PropertyRecord& row, auto placeOf) {
    const std::string& name = row.propertyName;
    const std::string& first = names.emplace(project.foldedNames.at(index++), name).first->second;
    if (first == name) return;
    report(placeOf(&PropertyRecord::propertyName),
           name + " differs from " + first + " only in case");
  });
}

void separatorInName(const ProjectReading& project, const Report& report) {
  eachProperty(project, [&](const PropertyRecord& row, auto placeOf) {
    const auto visit = [&](const std::string& name, std::string_view entry,
                           Tag<PropertyRecord> tag) {
      if (faultOfName(entry).empty()) return;
      report(placeOf(tag), quoted(name) + " can't be a file name");
    };
    visit(row.exportName, row.exportName, &PropertyRecord::exportName);
    visit(row.localName, row.localName, &PropertyRecord::localName);
    visit(row.propertyName, namesFile(row.propertyName), &PropertyRecord::propertyName);
  });
}

void longLocalName(const ProjectReading& project, const Report& report) {
  std::set<std::string> reported;
  eachProperty(project, [&](const PropertyRecord& row, auto placeOf) {
    if (row.localName.size() <= localNameLength || !reported.insert(row.localName).second) return;
    report(placeOf(&PropertyRecord::localName), row.localName + " has more than 6 characters");
  });
}

void severalServers(const ProjectReading& project, const Report& report) {
  reportOthers(project, report, &PropertyRecord::exportName,
               std::mem_fn(&PropertyRecord::exportName));
}

void severalLocalNames(const ProjectReading& project, const Report& report) {
  reportOthers(project, report, &PropertyRecord::localName,
               std::mem_fn(&PropertyRecord::localName));
}

void severalModuleCounts(const ProjectReading& project, const Report& report) {
  reportOthers(project, report, &PropertyRecord::numModules, [](const PropertyRecord& row) {
    return plainNumberText(textValue(row.numModules));
  });
}

void unknownFormat(const ProjectReading& project, const Report& report) {
  eachUnknownFormat(project, [&](const Place& place, std::string_view name) {
    if (formatInOtherCase(name).empty()) report(place, quoted(name) + " is not a format");
  });
}

void formatCase(const ProjectReading& project, const Report& report) {
  eachUnknownFormat(project, [&](const Place& place, std::string_view name) {
    const std::string meant = formatInOtherCase(name);
    if (!meant.empty()) report(place, quoted(name) + " must be written " + quoted(meant));
  });
}

void unknownArrayType(const ProjectReading& project, const Report& report) {
  eachProperty(project, [&](const PropertyRecord& row, auto placeOf) {
    const auto dot = row.outputFormat.find('.');
    if (dot == std::string::npos || getArrayTypeIndex(row.outputFormat) != 0) return;
    const std::string type = row.outputFormat.substr(dot + 1);
    if (upperCase(type) != "UNKNOWN")
      report(placeOf(&PropertyRecord::outputFormat), quoted(type) + " is not an array type");
  });
}

void unknownAccess(const ProjectReading& project, const Report& report) {
  eachProperty(project, [&](const PropertyRecord& row, auto placeOf) {
    if (!isAccessMode(row.access))
      report(placeOf(&PropertyRecord::access), quoted(row.access) + " is not an access mode");
  });
}

void brokenRange(const ProjectReading& project, const Report& report) {
  eachProperty(project, [&](const PropertyRecord& row, auto placeOf) {
    if (!isBrokenRange(row.description)) return;
    report(placeOf(&PropertyRecord::description),
           "the range in " + quoted(row.description) + " can't be parsed");
  });
}

void incompleteProcess(const ProjectReading& project, const Report& report) {
  if (project.properties.result.stop) return;
  // A row that is there twice doesn't stand in for one that is missing.
  std::map<std::string, std::pair<Place, std::set<std::string_view>>> processes;
  eachProperty(project, [&](const PropertyRecord& row, auto placeOf) {
    const auto process = processOf(row);
    if (process.first.empty()) return;
    const std::pair none(placeOf(&PropertyRecord::propertyName), std::set<std::string_view>());
    processes.emplace(process.first, none).first->second.second.insert(process.second);
  });
  for (const auto& [name, process] : processes) {
    const auto& [place, rows] = process;
    if (rows.size() >= processTemplates.size()) continue;
    report(place, "process " + name + " has " + std::to_string(rows.size()) + " of its 5 rows");
  }
}

using enum Severity;

constexpr auto propertyTable = std::to_array<Rule>({
    {"nameless-property",
     warning,
     "A property lacks a name",
     "It can't be edited: the form rejects a property without an export, local and property name.",
     "Fill in the name.",
     {"exports.csv", "MAGNET,MAGEQM,FIELD", "MAGNET,,FIELD", "MAGNET, MAGEQM ,FIELD"},
     namelessProperty},
    {"repeated-property",
     error,
     "Two rows for the same property",
     "Edit replaces the first one, whichever of them is selected, and generators get two "
     "properties of one name.",
     "Remove one of them.",
     {"exports.csv", "MAGNET,MAGEQM,FIELD", "MAGNET,MAGEQM,STATE", " MAGNET,MAGEQM,FIELD"},
     repeatedProperty},
    {"names-alike",
     warning,
     "Two property names differ only in case",
     "On a disk that ignores case, their device names would share one file, and Done refuses to "
     "write it.",
     "Rename one of them.",
     {"exports.csv", "MAGNET,MAGEQM,RAMP.STATUS", "MAGNET,MAGEQM,state",
      " MAGNET,MAGEQM,RAMP.STATUS"},
     otherCase},
    {"separator-in-name",
     error,
     "A name contains a path separator",
     "It can't be a file name. Done fails at the device names of such a property, and such a "
     "server has no directory of its own.",
     "Rename it.",
     {"exports.csv", "MAGNET,MAGEQM,RAMP.START", "MAGNET,MAGEQM,A/RAMP.START",
      "MAGNET,MAGEQM, RAMP.START"},
     separatorInName},
    {"long-local-name",
     warning,
     "A local name has more than 6 characters",
     "Only the first 6 count. Files and rows under the full name are not found.",
     "Shorten it to 6 characters.",
     {"exports.csv", "",
      "EXPORT_NAME,LOCAL_NAME,PROPERTY,PROPERTY_SIZE,FORMAT,ACCESS,NUM_MODULES,"
      "DESCRIPTION\r\nMAGNET,MAGNETEQM,FIELD,4,float,READ,4,\r\n",
      ""},
     longLocalName},
    {"several-servers",
     warning,
     "Rows with different export names",
     "The last row decides which server the form shows, and may switch to that server's "
     "directory.",
     "Move the rows to the directory of their own server.",
     {"exports.csv", "MAGNET,MAGEQM,RAMP.STATUS", "MAGNETS,MAGEQM,RAMP.STATUS",
      " MAGNET,MAGEQM,RAMP.STATUS"},
     severalServers},
    {"several-local-names",
     warning,
     "Rows with different local names",
     "Selecting a row with another name changes the names in the form, and may switch to another "
     "directory.",
     "Give all rows the local name of the server.",
     {"exports.csv", "MAGNET,MAGEQM,RAMP.STATUS", "MAGNET,MAGEQN,RAMP.STATUS",
      "MAGNET, MAGEQM,RAMP.STATUS"},
     severalLocalNames},
    {"several-module-counts",
     warning,
     "Rows with different numbers of devices",
     "A server has one number of devices, that of the last row. Each row gets it when it is "
     "selected.",
     "Give all rows the number of the server's devices.",
     {"exports.csv", "READ|WRITE, 4,", "READ|WRITE, 5,", "READ|WRITE,4.0,"},
     severalModuleCounts},
    {"unknown-format",
     warning,
     "Unknown format",
     "The form shows it as NULL, and Edit then writes NULL and size 0.",
     "Choose a format from the list.",
     {"exports.csv", "double.CHANNEL", "quad.CHANNEL", "float.CHANNEL"},
     unknownFormat},
    {"format-case",
     warning,
     "A format in the wrong case",
     "The form shows it as NULL, and Edit then writes NULL and size 0.",
     "Use the upper or lower case of the list of formats.",
     {"exports.csv", "double.CHANNEL", "Double.CHANNEL", "double.channel"},
     formatCase},
    {"unknown-array-type",
     warning,
     "Unknown array type",
     "The form shows it as UNKNOWN, and Edit then writes the format without it.",
     "Choose an array type from the list.",
     {"exports.csv", "float.CHANNEL", "float.CHANNELS", "float.channel"},
     unknownArrayType},
    {"unknown-access",
     warning,
     "Unknown access mode",
     "The form shows it as READ, and Edit then writes READ.",
     "Write READ, WRITE or READ|WRITE.",
     {"exports.csv", "READ|WRITE, 4", "WRITE|READ, 4", "WRITE, 4"},
     unknownAccess},
    {"broken-range",
     warning,
     "A range can't be parsed",
     "The form shows a wrong minimum, maximum or units, or those of the property selected before, "
     "and Edit writes them.",
     "Write the range as \"[minimum:maximum units]\" at the start of the description, and use no "
     "other brackets in it.",
     {"exports.csv", "[-1.5:1.5 T]Field", "[-1.5-1.5 T]Field", "[-1.5:1.5 ]Field"},
     brokenRange},
    {"incomplete-process",
     warning,
     "A process lacks some of its five rows",
     "The server can't carry out every command of the process.",
     "Remove its rows, and add the process again.",
     {"exports.csv", "RAMP.PAUSE,0,NULL,0,NULL, 3,WRITE,4,[0:3 ]Pause current ramp,3",
      "RAMP.START,0,NULL,0,NULL, 3,WRITE,4,[0:3 ]Pause current ramp,3",
      "RAMP.PAUSE,0,NULL,0,NULL, 9,WRITE,4,[0:3 ]Pause,3"},
     incompleteProcess},
});

}  // namespace

std::span<const Rule> propertyRules() {
  return propertyTable;
}

}  // namespace kova::checks
