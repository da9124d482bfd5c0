// SPDX-License-Identifier: MIT
#include "editing/trial_row.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>

#include "editing/memory_file.h"
#include "tables/alarm_table.h"
#include "tables/export_table.h"
#include "tables/history_table.h"
#include "tables/number_text.h"

namespace kova {
namespace {

const Path anyPath;

/// A file as read: the first row as it would be written again, if there is one.
struct Reread {
  std::optional<std::string> file;
  std::optional<ReadStop> stop;
};

std::string exportFile(const PropertyRecord& row) {
  return exportHeaderLine() + exportDataLine(row, 0);
}

std::string historyFile(const HistoryTable& table, std::int16_t count, const HistoryForm& form) {
  std::string file;
  WriteHistoryFile(into(file), anyPath, table, count, form);
  return file;
}

std::string alarmFile(const AlarmTable& table) {
  std::string file;
  WriteAlarmWatchFile(into(file), anyPath, table, 1);
  return file;
}

Reread rereadExports(const std::string& content) {
  Reread reread;
  const ReadResult result =
      readExportTable(MemoryFile(content), anyPath, [&](PropertyRecord&& row) {
        signedNumberText(row.numModules);  // shown as the number of devices; fails if it is none
        if (!reread.file) reread.file = exportFile(row);
      });
  reread.stop = result.stop;
  return reread;
}

Reread rereadHistory(const std::string& content) {
  Reread reread;
  HistoryTable table;
  std::int16_t count = 0;
  reread.stop = ReadHistoryFile(MemoryFile(content), anyPath, table, count).stop;
  if (count < 1) return reread;
  const HistoryRecord& row = table.front();
  // With the row's own names the form adds no line.
  HistoryForm sameNames;
  sameNames.exportName = row.exportName;
  sameNames.localName = row.localName;
  sameNames.propertyName = row.propertyName;
  reread.file = historyFile(table, 1, sameNames);
  return reread;
}

Reread rereadAlarms(const std::string& content) {
  Reread reread;
  AlarmTable table;
  std::int16_t count = 0;
  reread.stop = ReadAlarmWatchFile(MemoryFile(content), anyPath, table, count).stop;
  if (count > 0) reread.file = alarmFile(table);
  return reread;
}

Reread reread(TableFile file, const std::string& content) {
  switch (file) {
    case TableFile::exports:
      return rereadExports(content);
    case TableFile::history:
      return rereadHistory(content);
    case TableFile::alarms:
      return rereadAlarms(content);
  }
  return {};
}

std::string emptyFile(TableFile file) {
  if (file == TableFile::exports) return exportFile({});
  if (file == TableFile::history) {
    HistoryForm form;
    for (std::string HistoryForm::*number :
         {&HistoryForm::outputSize, &HistoryForm::heartbeat, &HistoryForm::pollingRate,
          &HistoryForm::archiveRate, &HistoryForm::shortDepth, &HistoryForm::longDepth}) {
      form.*number = "0";
    }
    return historyFile({}, 0, form);
  }
  // A row without names would not be written.
  AlarmWatchRecord row;
  row.localName = "x";
  row.propertyName = "x";
  return alarmFile({row});
}

std::vector<std::string> texts(std::string_view line) {
  CsvFields fields;
  splitCsvLine(line, fields);
  return {fields.begin(), fields.end()};
}

TrialRow takeApart(std::string_view file) {
  const auto end = file.find("\r\n");
  return {texts(file.substr(0, end)), texts(file.substr(end + 2))};
}

}  // namespace

std::string_view nameOf(TableFile file) {
  switch (file) {
    case TableFile::exports:
      return "exports.csv";
    case TableFile::history:
      return historyFileName;
    case TableFile::alarms:
      return alarmFileName;
  }
  return {};
}

TrialRow emptyRow(TableFile file) {
  return takeApart(emptyFile(file));
}

std::size_t columnOf(const TrialRow& row, std::string_view tag) {
  const auto found = std::find(row.tags.begin(), row.tags.end(), tag);
  return static_cast<std::size_t>(found - row.tags.begin());
}

Reading readBack(TableFile file, const TrialRow& row) {
  const Reread again = reread(file, csvLine(row.tags) + csvLine(row.fields));
  Reading reading;
  reading.stopped = again.stop.has_value();
  if (!again.file) return reading;
  reading.found = true;
  reading.fields = takeApart(*again.file).fields;
  return reading;
}

}  // namespace kova
