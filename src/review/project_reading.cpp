// SPDX-License-Identifier: MIT
#include "review/project_reading.h"

#include "tables/number_text.h"
#include "tables/row_rules.h"

namespace kova {
namespace {

/// Reads the files of one folder as the entry of a project does.
struct Reader {
  const FileSystem& files;
  std::string_view folder;
  ProjectReading& project;

  void readTables() const {
    const Path exports = fileInFolder(files, folder, exportsFileName);
    project.properties.result = readFile(files, exports, [&](std::string_view content) {
      return readExportTable(content, [&](PropertyRecord&& row) {
        signedNumberText(row.numModules);  // shown as the number of devices; fails if it is none
        project.properties.rows.push_back(std::move(row));
      });
    });
    readRows(project.history, historyFileName, ReadHistoryFile);
    readRows(project.alarms, alarmFileName, ReadAlarmWatchFile);
  }

  void readDevices() const {
    if (project.properties.rows.empty()) return;
    const PropertyRecord& last = project.properties.rows.back();
    const std::string devices = storedLocalName(last.localName).append(devicesEnding);
    project.devicesFile = project.codePage->toNative(devices);
    project.devices.result =
        ReadDevicesFile(files, folder, devices, last.numModules, project.devices.rows);
    for (PropertyRecord& row : project.properties.rows) {
      project.foldedNames.push_back(files.withoutCase(row.propertyName));
      const std::string name = namesFile(row.propertyName);
      const ReadResult result = ReadDevicesFile(files, folder, name, row.numModules, row.devices);
      row.hasDeviceList = result.rows > 0;
      project.nameLists.insert_or_assign(project.codePage->toNative(name), result);
    }
  }

 private:
  template <class Table, class Read>
  void readRows(TableReading<Table>& table, std::string_view name, Read read) const {
    table.rows.resize(static_cast<std::size_t>(tableRows));
    std::int16_t count = 0;
    table.result = read(files, fileInFolder(files, folder, name), table.rows, count);
    table.rows.resize(static_cast<std::size_t>(count));
  }
};

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

ProjectReading readProject(const FileSystem& files, std::string_view folder,
                           const CodePage& codePage) {
  ProjectReading project;
  project.codePage = &codePage;
  const Path path = files.path(folder);
  if (!files.folderExists(path)) throw Failure("There is no such directory");
  if (!files.fileExists(path / exportsFileName)) throw Failure("There is no exports.csv in it");
  takeFiles(files, path, project);
  const Reader reader{files, folder, project};
  reader.readTables();
  reader.readDevices();
  return project;
}

}  // namespace kova
