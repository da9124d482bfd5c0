// SPDX-License-Identifier: MIT
#include "tables/project_reader.h"

#include <utility>

#include "tables/number_text.h"

namespace kova {

ReadResult readExports(const TableSource& tables, Project& project) {
  std::int32_t index = project.exportCount;
  const auto take = [&](PropertyRecord&& row) {
    signedNumberText(row.numModules);  // fails here if it can't be shown as the number of devices
    checkRoom(static_cast<std::int16_t>(index));
    rowOf(project.exportTable, index++) = std::move(row);
  };
  return tables(exportsFileName,
                [&](std::string_view content) { return readExportTable(content, take); });
}

OtherTables readOtherTables(const TableSource& tables, Project& project, std::string_view localName,
                            std::string_view numDevices) {
  OtherTables read;
  read.history = tables(historyFileName, [&](std::string_view content) {
    return ReadHistoryFile(content, project.historyTable, project.historyCount);
  });
  project.historyInUse |= !read.history.stop;
  read.alarms = tables(alarmFileName, [&](std::string_view content) {
    return ReadAlarmWatchFile(content, project.alarmTable, project.alarmCount);
  });
  read.devicesFile = serverNamesFile(localName);
  read.devices = tables(read.devicesFile, [&](std::string_view content) {
    return ReadDevicesFile(content, numDevices, project.deviceNames);
  });
  project.deviceNamesDefined |= read.devices.rows > 0;
  return read;
}

}  // namespace kova
