// SPDX-License-Identifier: MIT
// Any bytes as a table of one of four kinds: a table that was read and written stays the same when
// it is read and written again, if the format can hold it.
#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "harness.h"
#include "tables/alarm_table.h"
#include "tables/export_table.h"
#include "tables/history_table.h"
#include "tables/row_rules.h"

namespace kova::fuzz {
namespace {

/// Reads the table and writes it again; a table without rows stays. False if the reader stopped
/// early.
bool rewrite(std::string& content, int kind) {
  const std::string read = content;
  const ReplaceFile put = [&](const Path&, std::string_view written) { content = written; };
  ReadResult result;
  std::int16_t count = 0;
  if (kind == 0) {
    content = exportHeaderLine();
    result = readExportTable(
        read, [&](const PropertyRecord& row) { content += exportDataLine(row, count++); });
  } else if (kind == 1) {
    HistoryTable rows;
    result = ReadHistoryFile(read, rows, count);
    // The names of a row in the form keep the writer from adding a line for the form.
    FormTexts form;
    const HistoryRecord& first = rowOf(rows, 0);
    form.exportName = first.exportName;
    form.localName = first.localName;
    form.propertyName = first.propertyName;
    if (count > 0) WriteHistoryFile(put, {}, rows, count, form);
  } else if (kind == 2) {
    AlarmTable rows;
    result = ReadAlarmWatchFile(read, rows, count);
    WriteAlarmWatchFile(put, {}, rows, count);
  } else {
    DeviceNames names(1);
    result = ReadDevicesFile(read, "5", names);
    WriteDevicesFile(put, {}, names);
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
  if (bytes.empty()) return;
  const std::string read(bytes.substr(1));
  const int kind = bytes[0] & 3;
  std::string written = read;
  rewrite(written, kind);
  if (written == read || !carries(read, written)) return;
  std::string again = written;
  require(rewrite(again, kind), "a written table is read to its end");
  require(again == written, "what was read is written the same again");
}

}  // namespace kova::fuzz
