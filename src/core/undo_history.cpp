// SPDX-License-Identifier: MIT
#include "core/undo_history.h"

#include <algorithm>
#include <map>
#include <utility>

#include "tables/quoting.h"

namespace kova {
namespace {

/// Selecting a line puts a space before its number of devices, which is no change.
bool haveSameTexts(const PropertyRecord& one, const PropertyRecord& other) {
  const ExportTexts before = exportTexts(one);
  const ExportTexts after = exportTexts(other);
  return std::equal(before.begin(), before.end(), after.begin(),
                    [](std::string_view then, std::string_view now) {
                      return stripBlanks(then) == stripBlanks(now);
                    });
}

bool areAlike(const PropertyRecord& one, const PropertyRecord& other) {
  return one.hasHistory == other.hasHistory && one.hasDeviceList == other.hasDeviceList &&
         one.hasAlarmWatch == other.hasAlarmWatch && one.devices == other.devices &&
         haveSameTexts(one, other);
}

template <class Row>
bool areAlike(const Row& one, const Row& other) {
  return one == other;
}

template <class Row>
bool isAlike(const SharedRows<Row>& before, const SharedRows<Row>& after, std::size_t row) {
  return before.isSameRow(row, after) || areAlike(before[row], after[row]);
}

/// The active rows are alike.
template <class Row>
bool areAlike(const SharedRows<Row>& before, std::int16_t beforeCount, const SharedRows<Row>& after,
              std::int16_t afterCount) {
  if (beforeCount != afterCount) return false;
  if (before.isSame(after)) return true;
  for (std::size_t row = 0; row < static_cast<std::size_t>(beforeCount); ++row) {
    if (!isAlike(before, after, row)) return false;
  }
  return true;
}

/// Names without the devices at the end that have none.
std::size_t namedDevices(const DeviceNames& names) {
  std::size_t size = names.size();
  while (size > 0 && names[size - 1].empty()) --size;
  return size;
}

bool haveSameNames(const DeviceNames& one, const DeviceNames& other) {
  const std::size_t size = namedDevices(one);
  return size == namedDevices(other) &&
         std::equal(one.begin(), one.begin() + static_cast<std::ptrdiff_t>(size), other.begin());
}

/// Each row has the names that it had.
bool haveSameProperties(const ProjectSnapshot& one, const ProjectSnapshot& other) {
  if (one.exportCount != other.exportCount) return false;
  for (std::size_t row = 0; row < static_cast<std::size_t>(one.exportCount); ++row) {
    if (one.properties.isSameRow(row, other.properties)) continue;
    const PropertyRecord& before = one.properties[row];
    const PropertyRecord& after = other.properties[row];
    if (before.propertyName != after.propertyName || before.exportName != after.exportName) {
      return false;
    }
  }
  return true;
}

/// Property names of the rows that only `one` has, with the first of a process for all five.
std::vector<std::string> namesOnlyIn(const ProjectSnapshot& one, const ProjectSnapshot& other) {
  if (haveSameProperties(one, other)) return {};
  std::map<std::pair<std::string_view, std::string_view>, int> there;
  for (std::int16_t row = 0; row < other.exportCount; ++row) {
    const PropertyRecord& property = other.properties[static_cast<std::size_t>(row)];
    ++there[{property.exportName, property.propertyName}];
  }
  std::vector<std::string> names;
  for (std::int16_t row = 0; row < one.exportCount; ++row) {
    const PropertyRecord& property = one.properties[static_cast<std::size_t>(row)];
    if (--there[{property.exportName, property.propertyName}] < 0) {
      names.push_back(property.propertyName);
    }
  }
  return names;
}

/// One name, or what the rows of a process have in common.
std::string nameOf(const std::vector<std::string>& names) {
  const std::string stem = names.front().substr(0, names.front().rfind('.'));
  const bool isProcess = std::all_of(names.begin(), names.end(), [&](const std::string& name) {
    return name.starts_with(stem + '.');
  });
  if (names.size() == 1) return names.front();
  return isProcess ? stem : counted(names.size(), "property", "properties");
}

std::string directoryStep(const ProjectSnapshot& before, const ProjectSnapshot& after) {
  std::string step;
  if (after.exportCount > 0) {
    step = "Open " + after.properties[static_cast<std::size_t>(after.exportCount) - 1].exportName;
  }
  if (before.exportCount > 0) {
    step += (step.empty() ? "" : ", ") +
            counted(static_cast<std::size_t>(before.exportCount), "row") +
            " dropped by the change of directory";
  }
  return step;
}

/// Rows differ only in what a selection reads from the disk, or looks up in the other tables.
bool isSelection(const ProjectSnapshot& before, const ProjectSnapshot& after) {
  for (std::size_t row = 0; row < static_cast<std::size_t>(after.exportCount); ++row) {
    if (isAlike(before.properties, after.properties, row)) continue;
    const PropertyRecord& then = before.properties[row];
    const PropertyRecord& now = after.properties[row];
    const bool isLookedUp =
        haveSameTexts(then, now) && (!then.hasDeviceList || then.devices == now.devices);
    if (!isLookedUp) return false;
  }
  return before.historyCount == after.historyCount && before.alarmCount == after.alarmCount;
}

StepKind kindOf(const ProjectSnapshot& before, const ProjectSnapshot& after) {
  if (before.projectPath != after.projectPath) return StepKind::opening;
  const bool isLookUp =
      before.exportCount == after.exportCount && before.deviceNames == after.deviceNames &&
      before.historyInUse == after.historyInUse &&
      before.deviceNamesDefined == after.deviceNamesDefined && isSelection(before, after);
  return isLookUp ? StepKind::selection : StepKind::change;
}

/// The first row that differs, where no name is new or gone.
std::string rowStep(const ProjectSnapshot& before, const ProjectSnapshot& after) {
  for (std::size_t row = 0; row < static_cast<std::size_t>(after.exportCount); ++row) {
    if (isAlike(before.properties, after.properties, row)) continue;
    const PropertyRecord& then = before.properties[row];
    const PropertyRecord& now = after.properties[row];
    if (now.propertyName != then.propertyName) return "Move " + now.propertyName;
    if (stripBlanks(now.numModules) != stripBlanks(then.numModules)) {
      return "Number of devices " + std::string(stripBlanks(now.numModules));
    }
    return (isSelection(before, after) ? "Select " : "Edit ") + now.propertyName;
  }
  return {};
}

}  // namespace

bool changesProject(const ProjectSnapshot& before, const ProjectSnapshot& after) {
  const bool hasRows = before.exportCount > 0 || after.exportCount > 0;
  return (hasRows && before.projectPath != after.projectPath) ||
         before.historyInUse != after.historyInUse ||
         before.deviceNamesDefined != after.deviceNamesDefined ||
         !areAlike(before.properties, before.exportCount, after.properties, after.exportCount) ||
         !areAlike(before.history, before.historyCount, after.history, after.historyCount) ||
         !areAlike(before.alarms, before.alarmCount, after.alarms, after.alarmCount) ||
         (before.deviceNames != after.deviceNames &&
          !haveSameNames(*before.deviceNames, *after.deviceNames));
}

std::string stepName(const ProjectSnapshot& before, const ProjectSnapshot& after) {
  const bool hasRows = before.exportCount > 0 || after.exportCount > 0;
  if (hasRows && before.projectPath != after.projectPath) return directoryStep(before, after);
  const auto added = namesOnlyIn(after, before);
  const auto removed = namesOnlyIn(before, after);
  if (!added.empty() && removed.empty()) return "Add " + nameOf(added);
  if (!removed.empty() && added.empty()) return "Remove " + nameOf(removed);
  if (!removed.empty()) return "Rename " + nameOf(removed) + " to " + nameOf(added);
  const std::size_t names = namedDevices(*before.deviceNames);
  if (names > after.deviceNames->size()) {
    return counted(names - after.deviceNames->size(), "device name") +
           " dropped by the number of devices";
  }
  if (std::string row = rowStep(before, after); !row.empty()) return row;
  if (!areAlike(before.history, before.historyCount, after.history, after.historyCount)) {
    return "History";
  }
  if (!areAlike(before.alarms, before.alarmCount, after.alarms, after.alarmCount)) {
    return "Alarm watch";
  }
  return "Device names";
}

void UndoHistory::endAction(std::size_t typing) {
  // A program that has ended has nothing to go back to.
  if (wizard_.state.quitInProgress || !wizard_.form.window.loaded()) return;
  SessionSnapshot now = takeSession(wizard_, last_);
  if (!last_.controls.empty() && changesProject(last_.project, now.project)) {
    addStep(std::move(now), typing);
    run(changed);
  } else {
    last_ = std::move(now);
  }
  nextName_.clear();
}

void UndoHistory::addStep(SessionSnapshot now, std::size_t typing) {
  for (; steps_.size() > done_; steps_.pop_back()) bytes_ -= steps_.back().bytes;
  Step step;
  step.time = wizard_.platform.clock.unixTime();
  step.typing = typing;
  step.before = last_;
  if (typing != 0 && !steps_.empty() && steps_.back().typing == typing) {
    step.before = std::move(steps_.back().before);
    bytes_ -= steps_.back().bytes;
    steps_.pop_back();
  }
  last_ = now;
  step.after = std::move(now);
  const ProjectSnapshot& before = step.before.project;
  done_ = steps_.size();
  // Keys may have taken back what the keys before them did.
  if (!changesProject(before, step.after.project)) return;
  step.name = nextName_.empty() ? stepName(before, step.after.project) : nextName_;
  step.kind = nextName_.empty() ? kindOf(before, step.after.project) : StepKind::change;
  const SessionSnapshot none;
  step.bytes = bytesBeyond(step.before, steps_.empty() ? none : steps_.back().after) +
               bytesBeyond(step.after, step.before);
  bytes_ += step.bytes;
  steps_.push_back(std::move(step));
  done_ = steps_.size();
  forgetOldest();
}

void UndoHistory::forgetOldest() {
  while (bytes_ > mostBytes_ && steps_.size() > 1) {
    bytes_ -= steps_.front().bytes;
    steps_.pop_front();
    forgotSteps_ = true;
    // What it shared with the next one is now held by that one alone.
    bytes_ -= steps_.front().bytes;
    steps_.front().bytes = bytesBeyond(steps_.front().before, {}) +
                           bytesBeyond(steps_.front().after, steps_.front().before);
    bytes_ += steps_.front().bytes;
    done_ = steps_.size();
  }
}

bool UndoHistory::hasChanges() const {
  for (std::size_t step = done_; step-- > 0;) {
    if (steps_[step].kind != StepKind::selection) return steps_[step].kind == StepKind::change;
  }
  return forgotSteps_;
}

void UndoHistory::undo() {
  if (done_ > 0) goTo(steps_[--done_].before);
}

void UndoHistory::redo() {
  if (done_ < steps_.size()) goTo(steps_[done_++].after);
}

void UndoHistory::goBefore(std::size_t step) {
  done_ = step;
  goTo(steps_.at(step).before);
}

void UndoHistory::goTo(const SessionSnapshot& moment) {
  restoreSession(wizard_, moment);
  last_ = takeSession(wizard_, moment);
  run(changed);
}

}  // namespace kova
