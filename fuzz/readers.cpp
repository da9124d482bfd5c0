// SPDX-License-Identifier: MIT
// Any bytes as a table of one of four kinds: a table that was read and written stays the same when
// it is read and written again, if the format can hold it.
#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "harness.h"
#include "platform/machine.h"
#include "support/temporary_folder.h"
#include "tables/alarm_table.h"
#include "tables/export_table.h"
#include "tables/history_table.h"
#include "tables/row_rules.h"

namespace kova::fuzz {
namespace {

constexpr const char* table = "t.csv";

/// Reads the table and writes it again. False if the reader stopped early.
bool rewrite(FileSystem& files, const std::string& folder, int kind) {
  const Path file = fileInFolder(files, folder, table);
  const ReplaceFile put = [&](const Path& target, std::string_view content) {
    replace(files, target, content);
  };
  const std::string content = files.read(file);
  ReadResult result;
  std::int16_t count = 0;
  if (kind == 0) {
    std::string rows = exportHeaderLine();
    result = readExportTable(
        content, [&](const PropertyRecord& row) { rows += exportDataLine(row, count++); });
    put(file, rows);
  } else if (kind == 1) {
    HistoryTable rows;
    result = ReadHistoryFile(content, rows, count);
    // The names of a row in the form keep the writer from adding a line for the form.
    FormTexts form;
    const HistoryRecord& first = rowOf(rows, 0);
    form.exportName = first.exportName;
    form.localName = first.localName;
    form.propertyName = first.propertyName;
    if (count > 0) WriteHistoryFile(put, file, rows, count, form);
  } else if (kind == 2) {
    AlarmTable rows;
    result = ReadAlarmWatchFile(content, rows, count);
    WriteAlarmWatchFile(put, file, rows, count);
  } else {
    DeviceNames names(1);
    result = ReadDevicesFile(content, "5", names);
    WriteDevicesFile(put, file, names);
  }
  return !result.stop;
}

/// No text has a line feed inside, a quote, or a comment sign at the start of its line.
bool carries(const std::string& read, const std::string& written) {
  for (std::size_t at = 0; at < read.size(); ++at) {
    if (read[at] == '\n' && (at == 0 || read[at - 1] != '\r')) return false;
  }
  constexpr std::array<const char*, 4> lost{"\"", "\n;", "\n%", "\n#"};
  return std::none_of(lost.begin(), lost.end(),
                      [&](const char* mark) { return written.find(mark) < written.size(); });
}

}  // namespace

void check(std::string_view bytes) {
  static const test::TemporaryFolder folder;
  static const CodePage page = CodePage::windows1252();
  static const auto files = realFileSystem(page);
  if (bytes.empty()) return;
  const std::string read(bytes.substr(1));
  const int kind = bytes[0] & 3;
  folder.write(table, read);
  rewrite(*files, folder.path(), kind);
  const std::string written = folder.read(table);
  // A table without rows is not written.
  if (written == read || !carries(read, written)) return;
  require(rewrite(*files, folder.path(), kind), "a written table is read to its end");
  require(folder.read(table) == written, "what was read is written the same again");
}

}  // namespace kova::fuzz
