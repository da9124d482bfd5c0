// SPDX-License-Identifier: MIT
#include "review/project_reading.h"

#include <algorithm>
#include <set>
#include <string>
#include <utility>

#include "tables/project_reader.h"

namespace kova {
namespace {

/// The names of a folder's files in the case folding of its disk.
std::set<std::string> foldedNamesOf(const FileSystem& files, const ProjectReading& reading) {
  std::set<std::string> folded;
  for (const std::string& name : reading.names) folded.insert(files.withoutCase(files.text(name)));
  return folded;
}

/// Serves the files that are already in memory, and takes those that a disk that ignores case has
/// under a name in another case.
TableSource tablesOf(const FileSystem& files, const Path& folder, ProjectReading& reading) {
  const auto take = [&files, folder, &reading,
                     listed = foldedNamesOf(files, reading)](const std::string& name) {
    const bool isListed = listed.contains(files.withoutCase(files.text(name)));
    if (!isListed || reading.unreadable.contains(name) || !files.fileExists(folder / name)) return;
    const auto& taken = *reading.files.emplace(name, files.read(folder / name)).first;
    reading.tables.emplace(name, parseTable(kindOfFile(name), taken.second));
  };
  return [take, &reading](std::string_view text, const ReadContent& read) {
    const std::string name = reading.codePage->toNative(text);
    if (!reading.files.contains(name)) take(name);
    const auto found = reading.files.find(name);
    if (found != reading.files.end()) return read(found->second);
    ReadResult nothing;
    nothing.stop = ReadStop{0, "There is no such file"};
    return nothing;
  };
}

/// Reads the tables in the way a project is opened.
void readTables(const TableSource& tables, ProjectReading& reading) {
  Project project;
  reading.properties.result = readExports(tables, project);
  countRows(project, reading.properties.result.rows);
  const PropertyRecord last = rowOf(std::as_const(project.exportTable), project.exportCount - 1);
  OtherTables others =
      readOtherTables(tables, project, storedLocalName(last.localName), last.numModules);
  const auto take = [](auto& table, auto& rows, std::int16_t count) {
    rows.resize(static_cast<std::size_t>(count));
    table.rows = std::move(rows);
  };
  take(reading.properties, project.exportTable, project.exportCount);
  take(reading.history, project.historyTable, project.historyCount);
  take(reading.alarms, project.alarmTable, project.alarmCount);
  reading.history.result = std::move(others.history);
  reading.alarms.result = std::move(others.alarms);
  if (reading.properties.rows.empty()) return;
  reading.devicesFile = reading.codePage->toNative(others.devicesFile);
  reading.devices = {std::move(project.deviceNames), std::move(others.devices)};
}

/// Reads the device names of each property, as the wizard does when it is selected.
void readNameLists(const FileSystem& files, const TableSource& tables, ProjectReading& reading) {
  for (PropertyRecord& row : reading.properties.rows) {
    reading.foldedNames.push_back(files.withoutCase(row.propertyName));
    const std::string name = namesFile(row.propertyName);
    ReadResult result = tables(name, [&](std::string_view content) {
      return ReadDevicesFile(content, row.numModules, row.devices.edit());
    });
    row.hasDeviceList = result.rows > 0;
    reading.nameLists.insert_or_assign(reading.codePage->toNative(name), std::move(result));
  }
}

void takeFiles(const FileSystem& files, const Path& folder, ProjectReading& project) {
  project.names = files.plainFiles(folder);
  for (const std::string& name : filesInUse(files, folder)) {
    const TableKind kind = kindOfFile(name);
    if (kind == TableKind::none) continue;
    try {
      project.files.emplace(name, files.read(folder / name));
    } catch (const Failure& failure) {
      project.unreadable.emplace(name, failure.what());
    }
  }
  for (const auto& [name, content] : project.files) {
    project.tables.emplace(name, parseTable(kindOfFile(name), content));
  }
}

}  // namespace

const TableText& ProjectReading::table(std::string_view name) const {
  static const TableText none;
  const auto found = tables.find(name);
  return found == tables.end() ? none : found->second;
}

Place ProjectReading::placeOf(std::string_view file, const ReadResult& result, std::size_t row,
                              std::string_view tag) const {
  const TableText& text = table(file);
  const std::size_t line = result.lines.at(row);
  const auto found = std::ranges::lower_bound(text.rows, line, {}, &TextRow::line);
  return {file, line, text.cell(*found, tag).column};
}

ProjectReading readProject(const FileSystem& files, std::string_view folder,
                           const CodePage& codePage) {
  ProjectReading project;
  project.codePage = &codePage;
  const Path path = files.path(folder);
  if (!files.folderExists(path)) throw Failure("There is no such directory");
  if (!files.fileExists(path / exportsFileName)) throw Failure("There is no exports.csv in it");
  takeFiles(files, path, project);
  const TableSource tables = tablesOf(files, path, project);
  readTables(tables, project);
  readNameLists(files, tables, project);
  return project;
}

}  // namespace kova
