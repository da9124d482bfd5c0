// SPDX-License-Identifier: MIT
#include "review/draft.h"

#include <utility>

#include "core/data_formats.h"
#include "core/project_open.h"
#include "core/status.h"
#include "review/differences.h"
#include "tables/project_reader.h"
#include "tables/quoting.h"

namespace kova {
namespace {

/// The time of day, with the date unless it is today.
std::string momentText(std::int32_t time, std::int32_t now) {
  constexpr std::size_t date = 10;
  constexpr std::size_t toMinute = 16;
  const std::string text = localTime(time).substr(0, toMinute);
  const bool isToday = localTime(now).starts_with(text.substr(0, date));
  return isToday ? text.substr(date + 1) : text;
}

std::string serverText(const DraftSummary& draft) {
  return draft.exportName.empty() ? "a new server" : draft.exportName;
}

/// A wizard without handlers that holds the session.
struct Holder {
  Holder(const Platform& platform, const SessionSnapshot& session) : wizard(platform, {}) {
    fillCombos(wizard);
    restoreSession(wizard, session);
  }
  Wizard wizard;
};

/// As after an opening at this moment.
FolderStates statesIn(const FileSystem& files, const Path& folder) {
  FolderStates states;
  if (!files.folderExists(folder)) return states;
  for (const std::string& name : files.plainFiles(folder)) {
    if (const auto state = files.state(folder / name)) states.emplace(name, *state);
  }
  return states;
}

ReviewGroup emptyGroup(const Wizard& wizard, const DraftSummary& draft) {
  const std::int32_t now = wizard.platform.clock.unixTime();
  ReviewGroup group;
  group.key = draft.key;
  group.name = draft.fault.empty() ? "Unsaved work on " + serverText(draft) : "Unreadable draft";
  group.name += " from " + momentText(draft.time, now);
  return group;
}

std::string listed(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) (text += text.empty() ? "" : ", ") += name;
  return text + (names.size() == 1 ? " was" : " were");
}

}  // namespace

SessionSnapshot completeSession(const FileSystem& files, const Draft& draft) {
  SessionSnapshot session = draft.session;
  ExportTable rows;
  session.project.properties.copyTo(rows);
  const TableSource tables = tablesIn(files, session.project.projectPath);
  for (const std::size_t index : draft.listsOnDisk) {
    PropertyRecord& row = rows.at(index);
    const ReadResult names = tables(namesFile(row.propertyName), [&](std::string_view content) {
      return ReadDevicesFile(content, row.numModules, row.devices.edit());
    });
    // Done would otherwise replace the missing names by new ones.
    row.hasDeviceList = names.rows > 0;
  }
  if (!draft.listsOnDisk.empty()) session.project.properties = {rows, {}};
  return session;
}

std::string draftText(const DraftSummary& draft, std::int32_t now) {
  return serverText(draft) + " from " + momentText(draft.time, now) + " (" +
         (draft.unwritten.empty() ? "texts in the form" : draft.unwritten) + ")";
}

std::string keptMessage(const Wizard& wizard, std::vector<DraftSummary> drafts) {
  std::erase_if(drafts, [](const DraftSummary& draft) { return !draft.fault.empty(); });
  if (drafts.empty()) return {};
  const std::string first =
      "Unsaved work on " + draftText(drafts.front(), wizard.platform.clock.unixTime());
  if (drafts.size() == 1) return first + " is kept: Review restores it.";
  return first + " and " + counted(drafts.size() - 1, "older draft") +
         " are kept: Review restores them.";
}

Preview previewOf(const Wizard& wizard, const Draft& draft, OverlayFiles& files) {
  Platform platform = wizard.platform;
  Holder holder({files, platform.environment, platform.clock, platform.programs},
                completeSession(wizard.platform.files, draft));
  holder.wizard.state.onDisk.states =
      statesIn(wizard.platform.files, files.path(projectDirectory(holder.wizard)));
  return preview(holder.wizard, files);
}

ReviewGroup draftGroup(const Wizard& wizard, const Draft& draft) {
  ReviewGroup group = emptyGroup(wizard, draft.summary);
  try {
    const FileSystem& disk = wizard.platform.files;
    OverlayFiles files(wizard.platform.files);
    const Preview done = previewOf(wizard, draft, files);
    if (!done.folder.empty() && !disk.folderExists(disk.path(done.folder))) {
      group.lines.push_back({.texts = {done.folder, "does not exist", "Done makes it"}});
    }
    for (const FileDifference& difference : comparePreview(disk, done)) {
      const ReviewGroup file = fileGroup(files, difference);
      group.lines.push_back({.key = file.key,
                             .sign = file.sign,
                             .accessible = file.accessible,
                             .style = file.style,
                             .texts = {file.name},
                             .below = file.lines});
    }
    if (!done.failure.empty()) throw Failure(done.failure);
  } catch (const Failure& failure) {
    group.lines.push_back({.texts = {failure.what()}, .fullText = failure.what()});
  }
  const Holder holder(wizard.platform, draft.session);
  group.lines.push_back(
      {.key = "form",
       .texts = {"Property in the form", "", holder.wizard.form.PropertyName.text()}});
  return group;
}

ReviewGroup draftGroup(const Wizard& wizard, const DraftSummary& draft) {
  ReviewGroup group = emptyGroup(wizard, draft);
  group.lines.push_back({.texts = {draft.fault}, .fullText = draft.fault});
  return group;
}

std::string interruptedMessage(const Wizard& wizard, const Draft& draft) {
  if (!draft.summary.finishing) return {};
  const FileSystem& disk = wizard.platform.files;
  OverlayFiles files(wizard.platform.files);
  const Preview done = previewOf(wizard, draft, files);
  std::vector<std::string> written;
  std::vector<std::string> missing;
  for (const Path& table : done.tables) {
    const bool isWritten = disk.fileExists(table) && disk.read(table) == done.files.at(table);
    (isWritten ? written : missing).push_back(disk.text(table.leaf()));
  }
  if (written.empty() || missing.empty()) return {};
  return "Done was interrupted: " + listed(written) + " written, " + listed(missing) +
         " not. Restore the unsaved work and press Done again. ";
}

void restoreDraft(Wizard& wizard, const Draft& draft) {
  const SessionSnapshot session = completeSession(wizard.platform.files, draft);
  const Holder holder(wizard.platform, session);
  const Project& project = holder.wizard.state.project;
  const std::string& directory = projectDirectory(holder.wizard);
  ProjectOnDisk disk = directory.empty()
                           ? ProjectOnDisk()
                           : readOnDisk(wizard, project, significantLocalName(holder.wizard),
                                        holder.wizard.form.NumDevices.text());
  WizardState& state = wizard.state;
  if (state.project.projectPath == project.projectPath) {
    state.onDisk = std::move(disk);
  } else {
    state.leftOnDisk.insert_or_assign(project.projectPath, std::move(disk));
  }
  restoreSession(wizard, session);
  const FileSystem& files = wizard.platform.files;
  const bool isMissing = !directory.empty() && !files.folderExists(files.path(directory));
  reportDraft(
      wizard,
      "Unsaved work on " + draftText(draft.summary, wizard.platform.clock.unixTime()) +
          " restored." +
          (isMissing ? " The directory " + directory + " does not exist: Done makes it." : ""));
}

}  // namespace kova
