// SPDX-License-Identifier: MIT
#include "review/review_pages.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "core/project_open.h"
#include "core/status.h"
#include "review/done_message.h"
#include "review/findings.h"
#include "review/overlay_files.h"
#include "review/preview.h"
#include "review/project_reading.h"
#include "tables/quoting.h"

namespace kova {
namespace {

std::string_view wordOf(Sign sign) {
  switch (sign) {
    case Sign::added:
      return "new";
    case Sign::removed:
      return "removed";
    case Sign::changed:
      return "changed";
    case Sign::moved:
      return "moved";
  }
  return {};
}

Style styleOf(Sign sign) {
  if (sign == Sign::added) return Style::added;
  return sign == Sign::removed ? Style::removed : Style::changed;
}

/// A line or group with its sign and style.
template <class Signed>
Signed withSign(Sign sign) {
  Signed result;
  result.sign = std::string(1, mark(sign));
  result.accessible = wordOf(sign);
  result.style = styleOf(sign);
  return result;
}

/// The property that a row of the file is about.
std::string propertyOf(std::string_view file, const std::vector<std::string>& names) {
  if (file.ends_with(namesEnding)) {
    return std::string(file.substr(0, file.size() - namesEnding.size()));
  }
  return kindOfFile(file) == TableKind::devices || names.empty() ? "" : names.back();
}

std::string joined(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) (text += text.empty() ? "" : " ") += name;
  return text;
}

/// Null if there are several. A device's number only identifies its row.
const FieldChange* onlyField(std::string_view file, const RowChange& row) {
  const FieldChange* only = nullptr;
  for (const FieldChange& field : row.fields) {
    if (kindOfFile(file) == TableKind::devices && field.column == deviceNumberTag) continue;
    if (only != nullptr) return nullptr;
    only = &field;
  }
  return only;
}

ReviewLine lineOf(std::string_view file, const RowChange& row) {
  auto line = withSign<ReviewLine>(row.sign);
  const bool alsoMoved = row.moved && row.sign != Sign::moved;
  line.key = joined(row.names);
  line.texts = {line.key + (alsoMoved ? " (moved)" : "")};
  line.property = propertyOf(file, row.names);
  line.before = row.before;
  line.after = row.after;
  // A single changed field fits into the row's own line.
  if (const FieldChange* only = onlyField(file, row)) {
    line.texts.front() += kindOfFile(file) == TableKind::devices ? "" : ": " + only->column;
    line.texts.insert(line.texts.end(), {only->before, only->after});
    return line;
  }
  for (const FieldChange& field : row.fields) {
    auto below = withSign<ReviewLine>(row.sign);
    below.key = field.column;
    below.texts = {field.column, field.before, field.after};
    below.property = line.property;
    line.below.push_back(std::move(below));
  }
  return line;
}

std::vector<ReviewGroup> groupsOf(const FileSystem& files,
                                  const std::vector<FileDifference>& differences) {
  std::vector<ReviewGroup> groups;
  std::transform(differences.begin(), differences.end(), std::back_inserter(groups),
                 [&](const FileDifference& file) { return fileGroup(files, file); });
  return groups;
}

/// "Done would change 3 rows in 2 files of DIRECTORY: 2 properties, 1 history row."
std::string headingOf(const Wizard& wizard, const Preview& done,
                      const std::vector<FileDifference>& files) {
  if (!done.failure.empty()) return "Done would fail: " + done.failure;
  if (done.files.empty()) return "Done would write nothing: there are no properties yet.";
  if (files.empty()) return "Done would change nothing: all files are up to date.";
  const Unwritten changes = countChanges(files);
  const std::string kinds = listed(changes);
  return "Done would change " + counted(changes.all(), "row") + " in " +
         counted(files.size(), "file") + " of " + done.folder +
         (kinds.empty() ? "" : ": " + kinds) +
         (done.addsHistoryRow ? "; history.csv gets " + formRowText(wizard) : "") + '.';
}

ReviewLine lineOf(const ProjectReading& project, const Finding& finding) {
  ReviewLine line;
  line.key = std::string(finding.rule->id) + ' ' + std::to_string(finding.line) + ' ' +
             std::to_string(finding.column);
  const Severity severity = finding.rule->severity;
  if (severity != Severity::note) line.style = Style::changed;
  if (severity == Severity::error) line.style = Style::removed;
  constexpr std::string_view signs = "i?!";
  line.sign = signs.substr(static_cast<std::size_t>(severity), 1);
  line.accessible = nameOf(severity);
  line.texts = {finding.line == 0 ? "" : std::to_string(finding.line), finding.message + '.',
                std::string(finding.rule->impact), std::string(finding.rule->fix)};
  line.fullText = line.texts[1] + ' ' + line.texts[2] + ' ' + line.texts[3];
  const TableText& table = project.table(finding.file);
  for (const TextRow& row : table.rows) {
    if (row.line != finding.line) continue;
    const std::string_view tag =
        table.kind == TableKind::alarms    ? tagOf(&AlarmWatchRecord::propertyName)
        : table.kind == TableKind::history ? tagOf(&HistoryRecord::propertyName)
                                           : tagOf(&PropertyRecord::propertyName);
    line.property =
        propertyOf(project.codePage->fromNative(finding.file), {std::string(table.text(row, tag))});
  }
  return line;
}

bool isMoreSevere(const ReviewLine& one, const ReviewLine& other) {
  return one.style == Style::removed ||
         (one.style == Style::changed && other.style == Style::plain);
}

/// One group per file, with the sign of its most severe finding.
std::vector<ReviewGroup> groupsOf(const ProjectReading& project,
                                  const std::vector<Finding>& findings) {
  std::vector<ReviewGroup> groups;
  for (const Finding& finding : findings) {
    const std::string name = project.codePage->fromNative(finding.file);
    if (groups.empty() || groups.back().name != name) groups.push_back({.key = name, .name = name});
    groups.back().lines.push_back(lineOf(project, finding));
  }
  for (ReviewGroup& group : groups) {
    const ReviewLine worst = *std::max_element(
        group.lines.begin(), group.lines.end(),
        [](const auto& one, const auto& other) { return isMoreSevere(other, one); });
    group.sign = worst.sign;
    group.accessible = worst.accessible;
    group.style = worst.style;
  }
  return groups;
}

ReviewPage findingsPage(const FileSystem& files, const std::string& folder,
                        const CodePage& codePage) {
  ReviewPage page{.heading = {}, .columns = {"Line", "Finding", "Impact", "Fix"}, .groups = {}};
  try {
    const ProjectReading project = readProject(files, folder, codePage);
    const std::vector<Finding> findings = findFindings(project);
    page.groups = groupsOf(project, findings);
    page.heading = findings.empty() ? "No findings in " + folder + " as Done would leave it."
                                    : counted(findings.size(), "finding") + " in " + folder +
                                          " as Done would leave it.";
  } catch (const Failure&) {
    page.heading = "There is no project to check yet.";
  }
  return page;
}

/// The current files of a set.
ProjectFiles presentOf(const ProjectFiles& all, const BackupSet& set) {
  ProjectFiles present;
  for (const BackedUpFile& file : set.files) {
    if (const auto found = all.find(file.name); found != all.end()) present.insert(*found);
  }
  return present;
}

ReviewLine lineOf(const FileSystem& files, const BackedUpFile& file,
                  const std::vector<FileDifference>& differences) {
  const auto difference =
      std::find_if(differences.begin(), differences.end(),
                   [&](const FileDifference& one) { return one.name == file.name; });
  if (difference == differences.end()) {
    return {.key = file.name, .texts = {files.text(file.name), "unchanged"}};
  }
  const ReviewGroup group = fileGroup(files, *difference);
  return {.key = file.name,
          .sign = group.sign,
          .accessible = group.accessible,
          .style = group.style,
          .texts = {group.name},
          .below = group.lines};
}

/// Sets of different projects may have the same timestamp.
std::string keyOf(const Wizard& wizard, const BackupSet& set) {
  return std::to_string(set.first) + ' ' + projectDirectory(wizard);
}

ReviewGroup groupOf(const Wizard& wizard, const Path& folder, const ProjectFiles& present,
                    const BackupSet& set) {
  ReviewGroup group;
  group.key = keyOf(wizard, set);
  group.name = localTime(set.first);
  group.age = ageText(set.last, wizard.platform.clock.unixTime()) + " ago";
  try {
    const FileSystem& files = wizard.platform.files;
    const auto differences = compareProjects(presentOf(present, set), filesOf(files, folder, set));
    for (const BackedUpFile& file : set.files) {
      group.lines.push_back(lineOf(files, file, differences));
    }
  } catch (const Failure& failure) {
    const std::string reported = wizard.platform.files.text(failure.what());
    group.lines.push_back({.texts = {reported}, .fullText = reported});
  }
  return group;
}

/// Opening the project reads the device names of the last row's local name, if that file exists.
bool willReadNames(const Wizard& wizard) {
  const WizardState& state = wizard.state;
  const std::string localName =
      state.project.exportCount == 0
          ? significantLocalName(wizard)
          : storedLocalName(
                rowOf(state.project.exportTable, state.project.exportCount - 1).localName);
  const FileSystem& files = wizard.platform.files;
  // In doubt, the question counts the names as lost.
  return mayExist(files, files.path(projectFile(state.project, serverNamesFile(localName))));
}

std::string restoreQuestion(const Wizard& wizard, const BackupSet& set) {
  const FileSystem& files = wizard.platform.files;
  const std::size_t rows =
      findLostByReading(wizard.state.project, wizard.state.onDisk, willReadNames(wizard)).all();
  const std::string target = set.files.size() == 1 ? files.text(set.files.front().name)
                                                   : counted(set.files.size(), "file");
  return "Restore " + target + " as of " + localTime(set.first) + " ?\r\n" +
         (rows == 0 ? ""
                    : counted(rows, "row or name that is", "rows and names that are") +
                          " not yet written would be dropped. ") +
         "The current files are backed up first. The project will then be reloaded.";
}

}  // namespace

ReviewGroup fileGroup(const FileSystem& files, const FileDifference& file) {
  auto group = withSign<ReviewGroup>(file.sign);
  group.key = file.name;
  group.name = files.text(file.name);
  for (const RowChange& row : file.rows) group.lines.push_back(lineOf(group.name, row));
  for (const std::string& message : file.formatting) {
    auto line = withSign<ReviewLine>(Sign::changed);
    line.key = message;
    line.texts = {message};
    line.fullText = message;
    group.lines.push_back(std::move(line));
  }
  return group;
}

ReviewOfDone reviewDone(const Wizard& wizard, const CodePage& codePage) {
  OverlayFiles files(wizard.platform.files);
  const Preview done = preview(wizard, files);
  const auto differences = comparePreview(wizard.platform.files, done);
  return {.writing = {.heading = headingOf(wizard, done, differences),
                      .columns = {"Row", "Now", "After Done"},
                      .groups = groupsOf(files, differences)},
          .findings = findingsPage(files, projectDirectory(wizard), codePage)};
}

std::vector<BackupSet> backupSetsOf(const Wizard& wizard) {
  try {
    return backupSets(wizard.platform.files, wizard.platform.files.path(projectDirectory(wizard)));
  } catch (const Failure&) {
    return {};
  }
}

ReviewPage reviewBackups(const Wizard& wizard, const std::vector<BackupSet>& sets) {
  ReviewPage page{.heading = "There are no backups in this directory.",
                  .columns = {"File or row", "Now", "Restored"},
                  .groups = {}};
  if (sets.empty()) return page;
  page.heading = "Select a set to see what restoring it would change.";
  try {
    const Path folder = wizard.platform.files.path(projectDirectory(wizard));
    const ProjectFiles present = projectFiles(wizard.platform.files, folder);
    for (const BackupSet& set : sets) page.groups.push_back(groupOf(wizard, folder, present, set));
  } catch (const Failure& failure) {
    page.heading = "The backups can't be compared: " + wizard.platform.files.text(failure.what());
  }
  return page;
}

std::optional<BackupSet> chosenBackups(const Wizard& wizard, const std::vector<BackupSet>& sets,
                                       const std::string& group, const std::string& line) {
  const auto set = std::find_if(sets.begin(), sets.end(),
                                [&](const BackupSet& one) { return keyOf(wizard, one) == group; });
  if (set == sets.end()) return std::nullopt;
  if (line.empty()) return *set;
  const auto file = std::find_if(set->files.begin(), set->files.end(),
                                 [&](const BackedUpFile& one) { return one.name == line; });
  if (file == set->files.end()) return std::nullopt;
  return BackupSet{set->first, set->last, {*file}};
}

bool selectProperty(Wizard& wizard, const std::string& property) {
  const std::int16_t index = findPropertyIndex(wizard, property);
  if (index >= wizard.state.project.exportCount) return false;
  wizard.form.PropertyList.select(index);
  return true;
}

void confirmAndRestore(Wizard& wizard, const BackupSet& set) {
  const Answer answer = wizard.messageBox({.text = restoreQuestion(wizard, set),
                                           .buttons = Buttons::yesNo,
                                           .title = "Restore a backup?",
                                           .enter = Answer::no});
  if (answer != Answer::yes) return;
  std::string failure;
  Restored restored;
  try {
    restored = restore(wizard.platform, projectDirectory(wizard), set);
    failure = restored.failure;
  } catch (const Failure& notBegun) {
    failure = notBegun.what();
  }
  ProjectDir_Change(wizard);
  if (failure.empty()) return reportRestored(wizard, restored.files.size());
  const FileSystem& files = wizard.platform.files;
  tell(wizard,
       "Could not restore " +
           (restored.missing.empty() ? "anything" : files.text(joined(restored.missing))) + " : " +
           files.text(failure) +
           (restored.files.empty() ? "" : "\r\nRestored: " + files.text(joined(restored.files))));
}

}  // namespace kova
