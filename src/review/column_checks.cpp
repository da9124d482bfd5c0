// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <optional>
#include <string>

#include "core/data_formats.h"
#include "review/checks.h"
#include "tables/number_text.h"
#include "tables/quoting.h"

namespace kova::checks {
namespace {

struct Reading {
  std::string_view file;
  const ReadResult* result;
};

/// Every table that the wizard reads when it opens a project, and where reading stopped.
std::vector<Reading> readings(const ProjectReading& project) {
  std::vector<Reading> all{{exportsFileName, &project.properties.result},
                           {historyFileName, &project.history.result},
                           {alarmFileName, &project.alarms.result},
                           {project.devicesFile, &project.devices.result}};
  for (const auto& [name, result] : project.nameLists) all.push_back({name, &result});
  std::erase_if(all, [&](const Reading& reading) { return !project.files.contains(reading.file); });
  return all;
}

/// Reading stopped because the table was full.
bool isFull(const Reading& reading) {
  return reading.result->rows >= tableRows && kindOfFile(reading.file) != TableKind::devices;
}

std::string unreadLines(const ProjectReading& project, const Reading& reading) {
  const auto& rows = project.table(reading.file).rows;
  const auto unread = std::count_if(rows.begin(), rows.end(), [&](const TextRow& row) {
    return row.line >= reading.result->stop->line;
  });
  return counted(static_cast<std::size_t>(unread), "line is", "lines are") + " not read";
}

template <class Visit>
void eachTable(const ProjectReading& project, Visit visit) {
  for (const auto& [name, table] : project.tables) visit(name, table);
}

template <class Visit>
void eachRow(const ProjectReading& project, Visit visit) {
  eachTable(project, [&](const std::string& name, const TableText& table) {
    for (const TextRow& row : table.rows) visit(name, table, row);
  });
}

bool isEmpty(const TextRow& row) {
  return row.cells.size() == 1 && row.cells.front().text.empty();
}

bool isTagOf(const ColumnFacts& column, const std::string& upper) {
  const auto& others = column.otherTags;
  return upperCase(column.tag) == upper ||
         (!upper.empty() && std::find(others.begin(), others.end(), upper) != others.end());
}

/// A repeated column has a known tag, but the reader does not use it.
bool isTagOfKind(TableKind kind, std::string_view tag) {
  const auto columns = columnsOf(kind);
  return std::any_of(columns.begin(), columns.end(),
                     [&](const ColumnFacts& column) { return isTagOf(column, upperCase(tag)); });
}

/// Visits the columns of the header that the reader does not use.
template <class Visit>
void eachUnusedColumn(const ProjectReading& project, Visit visit) {
  eachTable(project, [&](const std::string& name, const TableText& table) {
    // Rows that a bare LF joins to the header are no columns.
    const auto& cells = table.header.cells;
    const auto holdsLine = [](const Cell& cell) {
      return cell.text.find('\n') != std::string_view::npos;
    };
    if (std::any_of(cells.begin(), cells.end(), holdsLine)) return;
    for (std::size_t index = 0; index < cells.size(); ++index) {
      const Cell& cell = cells[index];
      if (cell.text.empty() || table.isKnown(index)) continue;
      visit(Place{name, table.header.line, cell.column}, cell.text,
            isTagOfKind(table.kind, cell.text));
    }
  });
}

/// Visits each field of a known column.
template <class Visit>
void eachField(const ProjectReading& project, Visit visit) {
  eachRow(project, [&](const std::string& name, const TableText& table, const TextRow& row) {
    for (const ColumnFacts& column : columnsOf(table.kind)) {
      const Cell cell = table.cell(row, column.tag);
      if (!cell.text.empty()) visit(Place{name, row.line, cell.column}, table, column, cell.text);
    }
  });
}

/// The form offers a fixed list of words for the column.
bool holdsWords(const ColumnFacts& column) {
  static constexpr std::array<std::string_view, 4> tags{
      tagOf(&PropertyRecord::outputFormat), tagOf(&HistoryRecord::format),
      tagOf(&PropertyRecord::inputFormat), tagOf(&PropertyRecord::access)};
  return std::find(tags.begin(), tags.end(), column.tag) != tags.end();
}

void stopped(const ProjectReading& project, const Report& report) {
  for (const Reading& reading : readings(project)) {
    const auto& stop = reading.result->stop;
    if (!stop || stop->line == 0 || isFull(reading)) continue;
    report({reading.file, stop->line, 1},
           "reading stops here: " + stop->reason + "; " + unreadLines(project, reading));
  }
}

void tableFull(const ProjectReading& project, const Report& report) {
  for (const Reading& reading : readings(project)) {
    if (!reading.result->stop || !isFull(reading)) continue;
    report({reading.file, reading.result->stop->line, 1},
           "row " + std::to_string(tableRows + 1) + "; " + unreadLines(project, reading));
  }
}

void noRows(const ProjectReading& project, const Report& report) {
  const TableText& exports = project.table(exportsFileName);
  if (exports.rows.empty()) report({exportsFileName}, "has no properties");
}

void missingColumn(const ProjectReading& project, const Report& report) {
  eachTable(project, [&](const std::string& name, const TableText& table) {
    const auto columns = columnsOf(table.kind);
    for (std::size_t index = 0; index < table.positions.size(); ++index) {
      if (table.positions[index] >= 0 || columns[index].mayBeMissing) continue;
      report({name, table.header.line, 1}, "column " + quoted(columns[index].tag) + " is missing");
    }
  });
}

void unknownColumn(const ProjectReading& project, const Report& report) {
  eachUnusedColumn(project, [&](const Place& place, std::string_view tag, bool isTwice) {
    if (!isTwice) report(place, "unknown column " + quoted(tag));
  });
}

void repeatedColumn(const ProjectReading& project, const Report& report) {
  eachUnusedColumn(project, [&](const Place& place, std::string_view tag, bool isTwice) {
    if (isTwice) report(place, "column " + quoted(tag) + " appears twice");
  });
}

void unnamedColumn(const ProjectReading& project, const Report& report) {
  eachTable(project, [&](const std::string& name, const TableText& table) {
    const auto& cells = table.header.cells;
    const auto found = std::find_if(cells.begin(), cells.end(),
                                    [](const Cell& cell) { return cell.text.empty(); });
    if (found == cells.end()) return;
    report({name, table.header.line, found->column}, "column without a name");
  });
}

void emptyLine(const ProjectReading& project, const Report& report) {
  eachRow(project, [&](const std::string& name, const TableText& table, const TextRow& row) {
    // The alarm reader skips rows without names.
    if (table.kind != TableKind::alarms && isEmpty(row)) report({name, row.line, 1}, "empty line");
  });
}

void tooManyFields(const ProjectReading& project, const Report& report) {
  eachRow(project, [&](const std::string& name, const TableText& table, const TextRow& row) {
    const std::size_t columns = table.header.cells.size();
    if (row.cells.size() <= columns) return;
    report(
        {name, row.line, row.cells[columns].column},
        std::to_string(row.cells.size()) + " fields for " + std::to_string(columns) + " columns");
  });
}

void tooFewFields(const ProjectReading& project, const Report& report) {
  eachRow(project, [&](const std::string& name, const TableText& table, const TextRow& row) {
    const std::size_t columns = table.header.cells.size();
    if (row.cells.size() >= columns || isEmpty(row)) return;
    report(
        {name, row.line, row.cells.back().column},
        std::to_string(row.cells.size()) + " fields for " + std::to_string(columns) + " columns");
  });
}

void openQuote(const ProjectReading& project, const Report& report) {
  eachRow(project, [&](const std::string& name, const TableText&, const TextRow& row) {
    const auto found = std::find_if(row.cells.begin() + 1, row.cells.end(),
                                    [](const Cell& cell) { return cell.text == "\""; });
    if (found == row.cells.end()) return;
    report({name, row.line, found->column}, "quote is not closed");
  });
}

void digitsForText(const ProjectReading& project, const Report& report) {
  eachField(project, [&](const Place& place, const TableText&, const ColumnFacts& column,
                         std::string_view text) {
    if (!holdsWords(column) || !isNumber(text)) return;
    report(place, "number " + std::string(text) + " in column " + std::string(column.tag));
  });
}

void textForNumber(const ProjectReading& project, const Report& report) {
  eachField(project, [&](const Place& place, const TableText& table, const ColumnFacts& column,
                         std::string_view text) {
    if (column.kind == FieldKind::text || column.kind == FieldKind::made || isNumber(text)) return;
    // Such a row stops the reader, which another rule reports.
    if (table.kind == TableKind::exports && column.tag == tagOf(&PropertyRecord::numModules))
      return;
    report(place, quoted(text) + " in column " + std::string(column.tag) + " is not a number");
  });
}

using enum Severity;

constexpr auto columnTable = std::to_array<Rule>({
    {"reading-stops",
     error,
     "Reading stops before the end of a table",
     "The wizard does not have the rows from this line on, and Done writes the table without "
     "them.",
     "Correct the line. The finding gives the reason.",
     {"history.csv", " 2,MAGNET", " 32768,MAGNET", " 32767,MAGNET"},
     stopped},
    {"table-full",
     error,
     "A table has more than 1001 rows",
     "The wizard does not have the rows after row 1001, and Done writes the table without them.",
     "Split the server, or remove unused rows.",
     {},
     tableFull},
    {"no-rows",
     note,
     "The export table has no rows",
     "The project opens empty, and Done writes nothing until it has a property.",
     "Add a property, or restore a backup.",
     {"exports.csv", "",
      "EXPORT_NAME,LOCAL_NAME,PROPERTY,PROPERTY_SIZE,FORMAT,ACCESS,"
      "NUM_MODULES,DESCRIPTION\r\n",
      ""},
     noRows},
    {"missing-column",
     error,
     "A column is missing",
     "Its field reads as empty, or as 0, in every row, and Done writes it that way.",
     "Add the column to the header, and its fields to the rows.",
     {"almwatch.csv", "severity", "importance", "SEVERITY"},
     missingColumn},
    {"unknown-column",
     warning,
     "Unknown column",
     "Done writes the table without it.",
     "Correct the column's name, or keep its content elsewhere.",
     {"almwatch.csv", "NORMAL", "NORMAL,NOTE", "normal"},
     unknownColumn},
    {"repeated-column",
     warning,
     "A column appears twice",
     "Only the first one is read, and Done drops the other.",
     "Remove one of them.",
     {"almwatch.csv", "NORMAL", "NORMAL,HIGH", " Normal"},
     repeatedColumn},
    {"unnamed-column",
     warning,
     "A column without a name",
     "Every column not found to its left is read from this one.",
     "Name the column or remove it.",
     {"almwatch.csv", "NORMAL", ",NORMAL", " Normal"},
     unnamedColumn},
    {"empty-line",
     warning,
     "An empty line among the rows",
     "It is read as a row. Reading the export table stops there, the history gets a row without "
     "names, and a device list clears the name of device 0.",
     "Remove the line.",
     {"history.csv", " 2,MAGNET", "\r\n 2,MAGNET", "2,MAGNET"},
     emptyLine},
    {"too-many-fields",
     error,
     "A row has more fields than the header has columns",
     "A comma splits a text, and the rest of the row is read from the wrong columns.",
     "Remove the comma from the text. The wizard writes texts as typed and adds no quotes.",
     {"exports.csv", "[-1.5:1.5 T]Field at the probes", "[-1.5:1.5 T]Field, at the probes",
      "\"Field, at the probes\""},
     tooManyFields},
    {"too-few-fields",
     warning,
     "A row has fewer fields than the header has columns",
     "The missing fields read as empty, or as 0.",
     "Complete the row.",
     {"exports.csv", "Field at the probes,0", "Field at the probes", "Field at the probes, 0"},
     tooFewFields},
    {"open-quote",
     warning,
     "A quote is not closed",
     "The quote is read as a field of its own, and the rest of the row is read from the wrong "
     "columns.",
     "Close the quote or remove it.",
     {"exports.csv", "[-1.5:1.5 T]Field at", "\"Field at", "Field \"at\""},
     openQuote},
    {"digits-for-text",
     warning,
     "A number in a text column",
     "A comma earlier in the row has shifted the columns, so most fields of the row are wrong.",
     "Look for a missing or extra comma in the row.",
     {"exports.csv", "double.CHANNEL,0,NULL, 7,READ", "double.CHANNEL,0,NULL, 7,4",
      "double.CHANNEL,0,NULL, 7,WRITE"},
     digitsForText},
    {"text-for-number",
     warning,
     "Text in a number column",
     "Only the number at its start counts, or 0 if there is none. If a comma has shifted the "
     "columns, most fields of the row are wrong.",
     "Correct the number, or look for a missing or extra comma.",
     {"exports.csv", "FIELD,4,double", "FIELD,four,double", "FIELD, 4 ,double"},
     textForNumber},
});

}  // namespace

bool hasAllColumns(const TableText& table) {
  const auto columns = columnsOf(table.kind);
  for (std::size_t index = 0; index < table.positions.size(); ++index) {
    if (table.positions[index] < 0 && !columns[index].mayBeMissing) return false;
  }
  return true;
}

std::span<const Rule> columnRules() {
  return columnTable;
}

}  // namespace kova::checks
