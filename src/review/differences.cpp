// SPDX-License-Identifier: MIT
#include "review/differences.h"

#include <algorithm>
#include <cctype>
#include <set>
#include <utility>

#include "review/formatting_differences.h"
#include "review/table_text.h"
#include "tables/alarm_table.h"
#include "tables/export_table.h"
#include "tables/history_table.h"
#include "tables/number_text.h"
#include "tables/row_pairs.h"

namespace kova {
namespace {

/// A column and its position in both tables, -1 where it is missing.
struct SharedColumn {
  std::string tag;
  FieldKind kind = FieldKind::text;
  std::int16_t before = -1;
  std::int16_t after = -1;
};

std::string_view fieldAt(const TextRow& row, std::int16_t position) {
  const auto index = static_cast<std::size_t>(position);
  return index < row.cells.size() ? row.cells[index].text : std::string_view();
}

std::vector<std::string_view> namingTags(TableKind kind) {
  switch (kind) {
    case TableKind::exports:
      return {tagOf(&PropertyRecord::exportName), tagOf(&PropertyRecord::propertyName)};
    case TableKind::history:
      return {tagOf(&HistoryRecord::exportName), tagOf(&HistoryRecord::localName),
              tagOf(&HistoryRecord::propertyName)};
    case TableKind::alarms:
      return {tagOf(&AlarmWatchRecord::localName), tagOf(&AlarmWatchRecord::propertyName)};
    case TableKind::devices:
      return {deviceNumberTag};
    case TableKind::none:
      break;
  }
  return {};
}

std::vector<std::string> namesOf(const TableText& table, const TextRow& row) {
  std::vector<std::string> names;
  for (const std::string_view tag : namingTags(table.kind)) {
    const std::string_view text = table.text(row, tag);
    // A device number may be written in several ways.
    names.push_back(table.kind == TableKind::devices ? plainNumberText(textValue(text))
                                                     : std::string(text));
  }
  return names;
}

/// The names of each row as one text.
std::vector<std::string> keysOf(const TableText& table) {
  std::vector<std::string> keys;
  for (const TextRow& row : table.rows) {
    std::string& key = keys.emplace_back();
    for (const std::string& name : namesOf(table, row)) (key += name) += '\0';
  }
  return keys;
}

class Comparison {
 public:
  Comparison(const TableText& before, const TableText& after) : before_(before), after_(after) {
    const auto columns = columnsOf(before.kind);
    for (std::size_t index = 0; index < columns.size(); ++index) {
      const auto position = [&](const TableText& table) {
        return index < table.positions.size() ? table.positions[index] : std::int16_t{-1};
      };
      if (columns[index].kind == FieldKind::made) continue;
      columns_.push_back({std::string(columns[index].tag), columns[index].kind, position(before),
                          position(after)});
    }
    addUnknown(before, &SharedColumn::before);
    addUnknown(after, &SharedColumn::after);
  }

  std::vector<RowChange> run() {
    pairs_ = pairRows(keysOf(before_), keysOf(after_));
    std::size_t removedUpTo = 0;
    for (std::size_t row = 0; row < after_.rows.size(); ++row) {
      const std::size_t partner = pairs_.partners[row];
      if (partner == noPartner) {
        add(row);
        continue;
      }
      if (!pairs_.moved[row]) {
        for (; removedUpTo < partner; ++removedUpTo) remove(removedUpTo);
      }
      compare(partner, row, pairs_.moved[row]);
    }
    for (; removedUpTo < before_.rows.size(); ++removedUpTo) remove(removedUpTo);
    return std::move(changes_);
  }

 private:
  void addUnknown(const TableText& table, std::int16_t SharedColumn::*position) {
    for (std::size_t index = 0; index < table.header.cells.size(); ++index) {
      const std::string tag(table.header.cells[index].text);
      if (tag.empty() || table.isKnown(index)) continue;
      const auto same = std::find_if(columns_.begin(), columns_.end(), [&](const auto& column) {
        return column.tag == tag && column.*position < 0;
      });
      SharedColumn& column = same == columns_.end() ? columns_.emplace_back() : *same;
      column.tag = tag;
      column.*position = static_cast<std::int16_t>(index);
    }
  }

  void add(std::size_t row) {
    RowChange change{Sign::added, false, namesOf(after_, after_.rows[row]), 0, row + 1, {}};
    for (const SharedColumn& column : columns_) {
      const std::string_view text = fieldAt(after_.rows[row], column.after);
      if (!text.empty()) change.fields.push_back({column.tag, {}, std::string(text)});
    }
    changes_.push_back(std::move(change));
  }

  void remove(std::size_t row) {
    if (pairs_.kept[row]) return;
    RowChange change{Sign::removed, false, namesOf(before_, before_.rows[row]), row + 1, 0, {}};
    for (const SharedColumn& column : columns_) {
      const std::string_view text = fieldAt(before_.rows[row], column.before);
      if (!text.empty()) change.fields.push_back({column.tag, std::string(text), {}});
    }
    changes_.push_back(std::move(change));
  }

  void compare(std::size_t from, std::size_t to, bool moved) {
    const TextRow& after = after_.rows[to];
    RowChange change{Sign::changed, moved, {}, from + 1, to + 1, {}};
    for (const SharedColumn& column : columns_) {
      const std::string_view was = fieldAt(before_.rows[from], column.before);
      const std::string_view is = fieldAt(after, column.after);
      if (readsAlike(column.kind, was, is)) continue;
      change.fields.push_back({column.tag, std::string(was), std::string(is)});
    }
    if (change.fields.empty() && !moved) return;
    if (change.fields.empty()) change.sign = Sign::moved;
    change.names = namesOf(after_, after);
    changes_.push_back(std::move(change));
  }

  const TableText& before_;
  const TableText& after_;
  std::vector<SharedColumn> columns_;
  RowPairs pairs_;
  std::vector<RowChange> changes_;
};

}  // namespace

Unwritten countChanges(const std::vector<FileDifference>& files) {
  Unwritten count;
  for (const FileDifference& file : files) {
    for (const RowChange& row : file.rows) {
      const TableKind kind = kindOfFile(file.name);
      ++(row.sign == Sign::removed    ? count.removals
         : kind == TableKind::exports ? count.properties
         : kind == TableKind::history ? count.historyRows
         : kind == TableKind::alarms  ? count.alarmRows
                                      : count.deviceNames);
    }
  }
  return count;
}

char mark(Sign sign) {
  switch (sign) {
    case Sign::added:
      return '+';
    case Sign::removed:
      return '-';
    case Sign::moved:
      return '>';
    case Sign::changed:
      break;
  }
  return '~';
}

std::optional<FileDifference> compareFile(std::string_view name,
                                          const std::optional<std::string>& before,
                                          const std::optional<std::string>& after) {
  if (before == after) return std::nullopt;
  FileDifference difference{.name = std::string(name), .rows = {}, .formatting = {}};
  if (!before) difference.sign = Sign::added;
  if (!after) difference.sign = Sign::removed;
  const TableKind kind = kindOfFile(name);
  if (kind == TableKind::none) return difference;
  const TableText from = parseTable(kind, before ? std::string_view(*before) : std::string_view());
  const TableText to = parseTable(kind, after ? std::string_view(*after) : std::string_view());
  difference.rows = Comparison(from, to).run();
  if (before && after) difference.formatting = formattingDifferences(from, to);
  if (difference.rows.empty() && difference.formatting.empty() && before && after) {
    difference.formatting = {"Formatting only (spaces, number format)"};
  }
  return difference;
}

std::vector<FileDifference> compareProjects(const ProjectFiles& before, const ProjectFiles& after) {
  std::set<std::string> names;
  for (const ProjectFiles* files : {&before, &after}) {
    for (const auto& [name, content] : *files) names.insert(name);
  }
  const auto contentOf = [](const ProjectFiles& files, const std::string& name) {
    const auto found = files.find(name);
    return found == files.end() ? std::nullopt : std::optional(found->second);
  };
  std::vector<FileDifference> differences;
  for (const std::string& name : names) {
    auto difference = compareFile(name, contentOf(before, name), contentOf(after, name));
    if (difference) differences.push_back(std::move(*difference));
  }
  return differences;
}

std::vector<FileDifference> comparePreview(const FileSystem& disk, const Preview& preview) {
  ProjectFiles before;
  ProjectFiles after;
  for (const auto& [path, content] : preview.files) {
    after.emplace(path.leaf(), content);
    try {
      before.emplace(path.leaf(), disk.read(path));
    } catch (const Failure&) {
      continue;  // shown as a new file
    }
  }
  return compareProjects(before, after);
}

std::string textOf(const RowChange& row) {
  std::string text;
  for (const std::string& name : row.names) {
    text += (text.empty() ? "" : " ") + (name.empty() ? "\"\"" : name);
  }
  if (row.sign != Sign::changed) return text;
  const char* separator = ": ";
  for (const FieldChange& field : row.fields) {
    const auto shown = [](const std::string& value) { return value.empty() ? "\"\"" : value; };
    text += std::exchange(separator, ", ") + field.column + ' ' + shown(field.before) + " -> " +
            shown(field.after);
  }
  return row.moved ? text + ", moved" : text;
}

}  // namespace kova
