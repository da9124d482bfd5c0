// SPDX-License-Identifier: MIT
// Any bytes as a table: what is read and written comes back, where the format can carry it.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "harness.h"
#include "platform/posix.h"
#include "support/temporary_folder.h"
#include "tables/alarm_table.h"
#include "tables/export_table.h"
#include "tables/history_table.h"
#include "tables/number_text.h"

namespace kova::fuzz {
namespace {

constexpr const char* table = "t.csv";

/// Reads the table, one of four kinds, and writes it anew. False if the reader stopped on its way.
bool rewrite(FileSystem& files, const std::string& folder, int kind) {
  const Path file = fileInFolder(files, folder, table);
  std::string exports = exportHeaderLine();
  std::int16_t count = 0;
  if (kind == 0) {
    const auto result = readExportTable(
        files, file, [&](const PropertyRecord& row) { exports += exportDataLine(row, count++); });
    replace(files, file, exports);
    return !result.stop;
  }
  if (kind == 1) {
    HistoryTable rows(static_cast<std::size_t>(tableRows));
    const auto result = ReadHistoryFile(files, file, rows, count);
    // With the names of a row in the form nothing is written for the form.
    HistoryForm form;
    form.exportName = rows[0].exportName;
    form.localName = rows[0].localName;
    form.propertyName = rows[0].propertyName;
    if (count > 0) WriteHistoryFile(files, file, rows, count, form);
    return !result.stop;
  }
  if (kind == 2) {
    AlarmTable rows(static_cast<std::size_t>(tableRows));
    const auto result = ReadAlarmWatchFile(files, file, rows, count);
    WriteAlarmWatchFile(files, file, rows, count);
    return !result.stop;
  }
  DeviceNames names(1);
  const auto result = ReadDevicesFile(files, folder, table, "5", names);
  WriteDevicesFile(files, folder, table, names);
  return !result.stop;
}

/// Fields of the data lines under the tags that `header` names.
std::vector<std::vector<std::string>> fieldsUnder(const FileSystem& files, const Path& file,
                                                  std::string_view header) {
  std::vector<std::vector<std::string>> rows;
  std::vector<std::int16_t> columns;
  const auto findColumns = [&](std::string_view line) {
    CsvFields tags;
    splitCsvLine(header, tags);
    for (const std::string_view tag : tags) {
      if (tag != "PROPERTY_ID") columns.push_back(getCsvColumn(line, tag));
    }
  };
  readTable(files, file, findColumns, [&](const CsvFields& fields) {
    rows.emplace_back();
    for (const std::int16_t column : columns) rows.back().emplace_back(getCsvField(fields, column));
  });
  return rows;
}

/// The text itself, or the whole number next to it.
bool sameValue(const std::string& read, const std::string& written) {
  try {
    return read == written || std::fabs(strictValue(written) - textValue(read)) <= 0.5;
  } catch (const Failure&) {
    return false;
  }
}

/// No text has a line feed within, a quote, or a comment sign at the head of its line.
bool carries(const std::string& read, const std::string& written) {
  for (std::size_t at = 0; at < read.size(); ++at) {
    if (read[at] == '\n' && (at == 0 || read[at - 1] != '\r')) return false;
  }
  return std::all_of(written.begin(), written.end(), [](char c) { return c != '"'; }) &&
         written.find("\n;") == std::string::npos && written.find("\n%") == std::string::npos &&
         written.find("\n#") == std::string::npos;
}

}  // namespace

void check(std::string_view bytes) {
  static const test::TemporaryFolder folder;
  static const CodePage page = CodePage::windows1252();
  static const auto files = posixFileSystem(page);
  if (bytes.empty()) return;
  const std::string read(bytes.substr(1));
  folder.write(table, read);
  const int kind = bytes[0] & 3;
  const Path file{folder.path(table)};
  const auto again = [&] { return rewrite(*files, folder.path(), kind); };
  again();
  const std::string written = folder.read(table);
  // A table without rows is not written.
  if (written == read || !carries(read, written)) return;
  const std::string header = written.substr(0, written.find('\r'));
  const auto rows = fieldsUnder(*files, file, header);
  require(again(), "a written table is read to its end");
  require(folder.read(table) == written, "what was read is written the same again");
  // These two write a line for each that they read, and know one tag a column.
  if (kind > 1) return;
  folder.write(table, read);
  const auto source = fieldsUnder(*files, file, header);
  for (std::size_t k = 0; k < rows.size(); ++k) {
    require(std::equal(source.at(k).begin(), source.at(k).end(), rows[k].begin(), sameValue),
            "each column keeps its values");
  }
}

}  // namespace kova::fuzz
