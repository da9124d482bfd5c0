// SPDX-License-Identifier: MIT
#include "tables/export_table.h"

#include <algorithm>
#include <array>
#include <utility>

#include "tables/number_text.h"
#include "tables/row_rules.h"

namespace kova {

namespace {

using Column = std::string PropertyRecord::*;

struct ColumnTag {
  std::string_view tag;
  Column field;  // null for the column that no reader reads
};

// In the order of the file.
constexpr std::array<ColumnTag, 12> columns{{
    {"EXPORT_NAME", &PropertyRecord::exportName},
    {"LOCAL_NAME", &PropertyRecord::localName},
    {"PROPERTY", &PropertyRecord::propertyName},
    {"PROPERTY_SIZE", &PropertyRecord::outputSize},
    {"FORMAT", &PropertyRecord::outputFormat},
    {"PROPERTY_INSIZE", &PropertyRecord::inputSize},
    {"INFORMAT", &PropertyRecord::inputFormat},
    {"PROPERTY_ID", nullptr},
    {"ACCESS", &PropertyRecord::access},
    {"NUM_MODULES", &PropertyRecord::numModules},
    {"DESCRIPTION", &PropertyRecord::description},
    {"NUM_STEPS", &PropertyRecord::numSteps},
}};

using Positions = std::array<std::int16_t, columns.size()>;

void fill(PropertyRecord& record, const CsvFields& fields, const Positions& positions) {
  for (std::size_t index = 0; index < columns.size(); ++index) {
    if (columns.at(index).field == nullptr) continue;
    record.*columns.at(index).field = fields[positions.at(index)];
  }
}

}  // namespace

std::int16_t findPropertyIndex(const ExportTable& exportTable, std::int16_t exportCount,
                               std::string_view expName, std::string_view prpName) {
  const auto end = exportTable.begin() + exportCount;
  const auto found = std::find_if(exportTable.begin(), end, [&](const PropertyRecord& row) {
    return row.propertyName == prpName && row.exportName == expName;
  });
  return static_cast<std::int16_t>(found - exportTable.begin());
}

ReadResult readExportTable(const FileSystem& files, const Path& file,
                           const std::function<void(PropertyRecord&&)>& take) {
  ReadResult result;
  Positions positions{};
  PropertyRecord record;
  result.stop = readTable(
      files, file,
      [&](std::string_view line) {
        std::transform(columns.begin(), columns.end(), positions.begin(),
                       [&](const ColumnTag& column) { return getCsvColumn(line, column.tag); });
      },
      [&](const CsvFields& fields) {
        checkRoom(result.rows);
        fill(record, fields, positions);
        take(std::move(record));
        ++result.rows;
      });
  return result;
}

ExportTexts exportTexts(const PropertyRecord& row) {
  ExportTexts texts;
  std::size_t index = 0;
  for (const ColumnTag& column : columns) {
    if (column.field != nullptr) texts[index++] = row.*column.field;
  }
  return texts;
}

std::string exportHeaderLine() {
  std::array<std::string, columns.size()> tags;
  std::transform(columns.begin(), columns.end(), tags.begin(),
                 [](const ColumnTag& column) { return std::string(column.tag); });
  return csvLine(tags);
}

std::string exportDataLine(const PropertyRecord& row, std::int16_t index) {
  std::array<std::string, columns.size()> fields;
  std::transform(columns.begin(), columns.end(), fields.begin(), [&](const ColumnTag& column) {
    return column.field == nullptr ? signedNumberText(index + 1) : row.*column.field;
  });
  return csvLine(fields);
}

std::string listLine(const PropertyRecord& row, std::string_view text) {
  constexpr std::size_t brackets = std::string_view("[]  <>").size();
  std::string line;
  line.reserve(row.exportName.size() + row.propertyName.size() + text.size() + brackets);
  line.append("[").append(row.exportName).append("] ").append(row.propertyName);
  return line.append(" <").append(text).append(">");
}

}  // namespace kova
