// SPDX-License-Identifier: MIT
#include <algorithm>
#include <functional>
#include <map>
#include <set>
#include <string>

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
  const auto& [rows, result] = project.properties;
  for (std::size_t row = 0; row < rows.size(); ++row) {
    visit(rows[row], [&, row](Tag<PropertyRecord> tag) {
      return project.placeOf(exportsFileName, result, row, tag.text);
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
    const std::string text = shown(row);
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

/// Name of the process that a row is part of, or nothing.
std::string processOf(const PropertyRecord& row) {
  if (textValue(row.numSteps) <= 0) return {};
  for (const ProcessTemplate& part : processTemplates) {
    const std::string& name = row.propertyName;
    if (name.ends_with(part.suffix)) return name.substr(0, name.size() - part.suffix.size());
  }
  return {};
}

}  // namespace

void namelessProperty(const ProjectReading& project, const Report& report) {
  eachProperty(project, [&](const PropertyRecord& row, auto placeOf) {
    if (row.exportName.empty())
      report(placeOf(&PropertyRecord::exportName), "export name is missing");
    if (row.localName.empty()) report(placeOf(&PropertyRecord::localName), "local name is missing");
    if (row.propertyName.empty())
      report(placeOf(&PropertyRecord::propertyName), "property name is missing");
  });
}

void repeatedProperty(const ProjectReading& project, const Report& report) {
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
  std::map<std::string, std::pair<Place, std::size_t>> processes;
  eachProperty(project, [&](const PropertyRecord& row, auto placeOf) {
    const std::string name = processOf(row);
    if (name.empty()) return;
    ++processes.try_emplace(name, placeOf(&PropertyRecord::propertyName), 0).first->second.second;
  });
  for (const auto& [name, process] : processes) {
    const auto& [place, rows] = process;
    if (rows >= processTemplates.size()) continue;
    report(place, "process " + name + " has " + std::to_string(rows) + " of its 5 rows");
  }
}

}  // namespace kova::checks
