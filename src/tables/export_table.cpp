// SPDX-License-Identifier: MIT
#include "tables/export_table.h"

#include <algorithm>
#include <array>
#include <utility>

#include "tables/columns.h"
#include "tables/row_rules.h"

namespace kova {

std::int16_t findPropertyIndex(const ExportTable& exportTable, std::int16_t exportCount,
                               std::string_view expName, std::string_view prpName) {
  const auto end = exportTable.begin() + exportCount;
  const auto found = std::find_if(exportTable.begin(), end, [&](const PropertyRecord& row) {
    return row.propertyName == prpName && row.exportName == expName;
  });
  return static_cast<std::int16_t>(found - exportTable.begin());
}

ReadResult readExportTable(std::string_view content,
                           const std::function<void(PropertyRecord&&)>& take) {
  RowReader<PropertyRecord> reader;
  PropertyRecord record;
  return readTable(
      content, [&](std::string_view header) { reader.findColumns(header); },
      [&](const CsvFields& fields, std::int16_t rows) {
        checkRoom(rows);
        reader.fill(record, fields);
        take(std::move(record));
        return true;
      });
}

ExportTexts exportTexts(const PropertyRecord& row) {
  ExportTexts texts;
  std::size_t index = 0;
  for (const auto& column : tableColumns<PropertyRecord>) {
    const auto* text = std::get_if<std::string PropertyRecord::*>(&column.member);
    if (text != nullptr) texts.at(index++) = row.*(*text);
  }
  return texts;
}

std::span<const ColumnFacts> exportColumns() {
  static constexpr auto facts = columnFacts<PropertyRecord>();
  return facts;
}

std::string exportHeaderLine() {
  return headerLine<PropertyRecord>();
}

std::string exportDataLine(const PropertyRecord& row, std::int16_t index) {
  return dataLine(row, signedNumberText(index + 1));
}

std::string listLine(const PropertyRecord& row, std::string_view text) {
  constexpr std::size_t brackets = std::string_view("[]  <>").size();
  std::string line;
  line.reserve(row.exportName.size() + row.propertyName.size() + text.size() + brackets);
  line.append("[").append(row.exportName).append("] ").append(row.propertyName);
  return line.append(" <").append(text).append(">");
}

}  // namespace kova
