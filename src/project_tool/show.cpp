// SPDX-License-Identifier: MIT
#include "json/row_json.h"
#include "project_tool/json.h"
#include "review/project_reading.h"
#include "tables/number_text.h"
#include "tables/quoting.h"
#include "tables/range_prefix.h"
#include "tables/row_rules.h"

namespace kova {
namespace {

/// A project as JSON. Table fields that hold typed text stay text, even where they mean numbers.
class JsonProject {
 public:
  JsonProject(const Tool& tool, const ProjectReading& project) : tool_(tool), project_(project) {}

  Json document(const std::string& directory) const {
    Json document = {{"version", formatVersion}, {"directory", directory}, {"server", server()}};
    document["properties"] = list(project_.properties.rows);
    document["history"] = list(project_.history.rows);
    document["alarms"] = list(project_.alarms.rows);
    document["stops"] = stops();
    return document;
  }

 private:
  std::string text(const std::string& text) const { return tool_.codePage.toUtf8(text); }

  template <class Rows>
  Json list(const Rows& rows) const {
    Json all = Json::array();
    for (const auto& row : rows) all.push_back(json(row));
    return all;
  }

  Json names(const DeviceNames& names) const {
    Json all = Json::array();
    for (const std::string& name : names) all.push_back(text(name));
    return all;
  }

  Json server() const {
    if (project_.properties.rows.empty()) return nullptr;
    const PropertyRecord& last = project_.properties.rows.back();
    return {{"exportName", text(last.exportName)},
            {"localName", text(storedLocalName(last.localName))},
            {"devices", text(last.numModules)},
            {"deviceNames", names(project_.devices.rows)}};
  }

  Json range(const DescriptionParts& parts) const {
    if (!parts.hasPrefix) return nullptr;
    return {{"minimum", text(parts.minimum.value_or(std::string()))},
            {"maximum", text(parts.maximum.value_or(std::string()))},
            {"units", text(parts.units)}};
  }

  Json json(const PropertyRecord& row) const {
    const DescriptionParts parts = parseDescription(row.description);
    Json json = columnsJson(row, tool_.codePage);
    json["range"] = range(parts);
    json["description"] = text(parts.rest);
    json["deviceNames"] = row.hasDeviceList ? names(row.devices) : Json(nullptr);
    return json;
  }
  Json json(const HistoryRecord& row) const { return columnsJson(row, tool_.codePage); }
  Json json(const AlarmWatchRecord& row) const { return columnsJson(row, tool_.codePage); }

  Json stops() const {
    Json all = Json::array();
    const auto add = [&](std::string_view file, const ReadResult& result) {
      if (!result.stop || result.stop->line == 0) return;
      all.push_back(
          {{"file", file}, {"line", result.stop->line}, {"reason", text(result.stop->reason)}});
    };
    add(exportsFileName, project_.properties.result);
    add(historyFileName, project_.history.result);
    add(alarmFileName, project_.alarms.result);
    add(project_.devicesFile, project_.devices.result);
    return all;
  }

  const Tool& tool_;
  const ProjectReading& project_;
};

/// Prints the fields of a table as they are in its file, one line per row.
void printRows(const Tool& tool, const ProjectReading& project, std::string_view file,
               std::size_t count) {
  const TableText& table = project.table(file);
  tool.printLine("");
  tool.printLine(std::string(file) + ": " + counted(count, "row"));
  for (const TextRow& row : table.rows) {
    if (count-- == 0) break;
    std::string line = "  line " + std::to_string(row.line) + ':';
    for (const ColumnFacts& column : columnsOf(table.kind)) {
      const std::string_view text = table.text(row, column.tag);
      if (column.kind == FieldKind::made || text.empty()) continue;
      line.append(" ").append(column.tag).append("=") += tool.shown(std::string(text));
    }
    tool.printLine(line);
  }
}

void printNames(const Tool& tool, const std::string& title, const DeviceNames& names) {
  tool.printLine("");
  tool.printLine(title + ':');
  for (std::size_t device = 0; device < names.size(); ++device) {
    tool.printLine("  " + std::to_string(device) + ' ' + tool.shown(names[device]));
  }
}

void printText(const Tool& tool, const ProjectReading& project) {
  if (project.properties.rows.empty()) {
    tool.printLine("No properties");
    return;
  }
  const PropertyRecord& last = project.properties.rows.back();
  tool.printLine("Server " + tool.shown(last.exportName) + ", local name " +
                 tool.shown(storedLocalName(last.localName)) + ", " +
                 plainNumberText(textValue(last.numModules)) + " devices");
  if (project.devices.result.rows > 0) printNames(tool, "Devices", project.devices.rows);
  printRows(tool, project, exportsFileName, project.properties.rows.size());
  printRows(tool, project, historyFileName, project.history.rows.size());
  printRows(tool, project, alarmFileName, project.alarms.rows.size());
  for (const PropertyRecord& row : project.properties.rows) {
    if (!row.hasDeviceList) continue;
    printNames(tool, "Devices of " + tool.shown(row.propertyName), row.devices);
  }
}

}  // namespace

ExitStatus show(const Tool& tool, const ShowOptions& options) {
  const ProjectReading project = naming(options.directory, [&] {
    return readProject(*tool.machine.files, tool.wizardText(options.directory), tool.codePage);
  });
  if (options.format == "json") {
    print(tool, JsonProject(tool, project).document(options.directory));
  } else {
    printText(tool, project);
  }
  return ExitStatus::noFindings;
}

}  // namespace kova
