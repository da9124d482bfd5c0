// SPDX-License-Identifier: MIT
#include "desktop/draft_keeper.h"

#include <algorithm>
#include <utility>

#include "core/project_open.h"
#include "core/status.h"
#include "tables/quoting.h"

namespace kova {
namespace {

constexpr int pause = 1000;  // milliseconds between a change and its draft

/// Rows that are shared are equal.
bool isSameProject(const ProjectSnapshot& one, const ProjectSnapshot& other) {
  return one.properties.isSame(other.properties) && one.history.isSame(other.history) &&
         one.alarms.isSame(other.alarms) && one.exportCount == other.exportCount &&
         one.historyCount == other.historyCount && one.alarmCount == other.alarmCount &&
         one.deviceNames == other.deviceNames && one.projectPath == other.projectPath &&
         one.historyInUse == other.historyInUse &&
         one.deviceNamesDefined == other.deviceNamesDefined;
}

std::int32_t selectedLine(const SessionSnapshot& session) {
  for (const ControlState& control : session.controls) {
    if (const auto* list = std::get_if<ListBox::State>(&control)) return list->selected;
  }
  return ListBox::none;
}

}  // namespace

DraftKeeper::DraftKeeper(Wizard& wizard, UndoControls& undo, DraftFolder& folder)
    : wizard_(wizard), undo_(undo), folder_(folder) {
  soon_.setSingleShot(true);
  connect(&soon_, &QTimer::timeout, this, [this] { write(undo_.history().now(), false); });
}

bool DraftKeeper::reportKept() {
  try {
    kept_ = folder_.kept(wizard_.platform.clock.unixTime());
  } catch (const Failure& failure) {
    reportFailure(failure);
    return true;
  }
  std::string message = keptMessage(wizard_, kept_);
  if (message.empty()) return false;
  if (kept_.front().finishing) {
    try {
      message = interruptedMessage(wizard_, folder_.read(wizard_, kept_.front().key)) + message;
    } catch (const Failure&) {
      // The list of drafts gives the reason.
      message = keptMessage(wizard_, kept_);
    }
  }
  reportDraft(wizard_, message);
  return true;
}

/// Something is not written that opening the project has not left so by itself, or the form
/// differs from what it showed when all was written.
bool DraftKeeper::isWorthKeeping(const SessionSnapshot& now) {
  const WizardState& state = wizard_.state;
  const bool hasChanges =
      undo_.history().hasChanges() || changesProject(undo_.history().now().project, now.project);
  if (hasChanges && findUnwritten(state.project, state.onDisk).all() > 0) return true;
  const bool showsOtherRow = shown_.controls.empty() ||
                             !isSameProject(shown_.project, now.project) ||
                             selectedLine(shown_) != selectedLine(now);
  if (showsOtherRow) shown_ = now;
  return !haveSameForm(shown_, now);
}

void DraftKeeper::actionEnded() {
  const SessionSnapshot& now = undo_.history().now();
  if (now.controls.empty() || ended_) return;
  if (!isWorthKeeping(now)) {
    soon_.stop();
    written_ = {};
    folder_.removeOwn();
  } else if (!soon_.isActive() &&
             !(isSameProject(written_.project, now.project) && haveSameForm(written_, now))) {
    // Not restarted by later changes, or a draft would wait for the end of the typing.
    soon_.start(pause);
  }
}

void DraftKeeper::write(const SessionSnapshot& now, bool finishing) {
  soon_.stop();
  const WizardState& state = wizard_.state;
  const DraftSummary summary{.key = {},
                             .time = wizard_.platform.clock.unixTime(),
                             .directory = projectDirectory(wizard_),
                             .exportName = wizard_.form.ExportName.text(),
                             .unwritten = listed(findUnwritten(state.project, state.onDisk)),
                             .finishing = finishing,
                             .fault = {}};
  try {
    folder_.write(wizard_, summary, now);
    written_ = now;
  } catch (const Failure& failure) {
    reportFailure(failure);
  }
}

/// Once: a full disk would otherwise be reported at each change.
void DraftKeeper::reportFailure(const Failure& failure) {
  if (std::exchange(failureReported_, true)) return;
  reportDraft(wizard_, std::string("Unsaved work can't be kept: ") + failure.what() + ".");
}

void DraftKeeper::beginDone() {
  write(takeSession(wizard_, undo_.history().now()), true);
}

void DraftKeeper::end() {
  if (std::exchange(ended_, true)) return;
  if (wizard_.state.allWritten) {
    soon_.stop();
    folder_.removeOwn();
    for (const std::string& key : restored_) folder_.remove(key);
    return;
  }
  const SessionSnapshot now = takeSession(wizard_, undo_.history().now());
  if (isWorthKeeping(now)) return write(now, false);
  soon_.stop();
  folder_.removeOwn();
}

std::vector<ReviewGroup> DraftKeeper::groups() {
  std::vector<ReviewGroup> groups;
  try {
    kept_ = folder_.kept(wizard_.platform.clock.unixTime());
  } catch (const Failure&) {
    kept_.clear();  // reported at the start
  }
  for (DraftSummary& draft : kept_) {
    try {
      if (draft.fault.empty()) {
        groups.push_back(draftGroup(wizard_, folder_.read(wizard_, draft.key)));
        continue;
      }
    } catch (const Failure& failure) {
      draft.fault = failure.what();
    }
    groups.push_back(draftGroup(wizard_, draft));
  }
  return groups;
}

const DraftSummary* DraftKeeper::find(const std::string& key) const {
  const auto draft = std::find_if(kept_.begin(), kept_.end(),
                                  [&](const DraftSummary& one) { return one.key == key; });
  return draft == kept_.end() ? nullptr : &*draft;
}

bool DraftKeeper::canRestore(const std::string& key) const {
  const DraftSummary* draft = find(key);
  return draft != nullptr && draft->fault.empty();
}

void DraftKeeper::restore(const std::string& key) {
  std::string failure;
  try {
    const Draft draft = folder_.read(wizard_, key);
    undo_.replaceSession("Restore unsaved work on " + draft.summary.exportName, [&] {
      try {
        restoreDraft(wizard_, draft);
        restored_.push_back(key);
      } catch (const Failure& notBackedUp) {
        failure = notBackedUp.what();
      }
    });
  } catch (const Failure& notRead) {
    failure = notRead.what();
  }
  if (!failure.empty()) tell(wizard_, "Could not restore the unsaved work : " + failure);
}

void DraftKeeper::confirmAndRemove(const std::string& key) {
  const DraftSummary* draft = find(key);
  if (draft == nullptr) return;
  const std::int32_t now = wizard_.platform.clock.unixTime();
  if (isConfirmed("Delete the unsaved work on " + draftText(*draft, now) + " ?")) {
    folder_.remove(key);
  }
}

void DraftKeeper::confirmAndRemoveAll() {
  if (!isConfirmed("Delete " + counted(kept_.size(), "draft") + " of unsaved work ?")) return;
  for (const DraftSummary& draft : kept_) folder_.remove(draft.key);
}

bool DraftKeeper::isConfirmed(const std::string& question) const {
  return wizard_.messageBox({.text = question,
                             .buttons = Buttons::yesNo,
                             .title = "Delete drafts?",
                             .enter = Answer::no}) == Answer::yes;
}

}  // namespace kova
