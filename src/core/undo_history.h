// SPDX-License-Identifier: MIT
// The steps of a session. A step is a user action that changed the project.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>

#include "core/session_snapshot.h"

namespace kova {

/// What a step has done to the project.
enum class StepKind : std::uint8_t {
  opening,    ///< opened or dropped a project by a change of directory
  selection,  ///< looked up what belongs to a row
  change
};

/// A user action, and the moments before and after it.
struct Step {
  StepKind kind = StepKind::change;
  std::string name;        ///< "Remove PRESSURE"
  std::int32_t time = 0;   ///< seconds since 1970-01-01 00:00:00 UTC
  std::size_t typing = 0;  ///< the run of keys in one field that it belongs to; 0: none
  SessionSnapshot before;
  SessionSnapshot after;
  std::size_t bytes = 0;  ///< that it holds alone
};

class UndoHistory {
 public:
  /// The oldest steps are forgotten beyond `mostBytes`, but never the last one. The wizard outlives
  /// the object.
  explicit UndoHistory(Wizard& wizard, std::size_t mostBytes = std::size_t{64} << 20U)
      : wizard_(wizard), mostBytes_(mostBytes) {}

  /// A user action has ended and the next one has not begun. It is a step if it changed the
  /// project. Actions with the same `typing`, a number that is not 0, are one step: keys in a
  /// field.
  void endAction(std::size_t typing = 0);
  /// The name of the next step, where comparing both moments does not tell it.
  void nameNextStep(std::string name) { nextName_ = std::move(name); }

  /// The step that an undo takes back or a redo does again; null if there is none.
  const Step* undoStep() const { return done_ == 0 ? nullptr : &steps_[done_ - 1]; }
  const Step* redoStep() const { return done_ == steps_.size() ? nullptr : &steps_[done_]; }
  void undo();
  void redo();
  /// The session when the last action ended; without controls before the first one.
  const SessionSnapshot& now() const { return last_; }
  /// The project is not as its opening has left it: a step has changed it that is not taken back.
  bool hasChanges() const;
  /// All steps, oldest first, and how many of them are not taken back.
  const std::deque<Step>& steps() const { return steps_; }
  std::size_t done() const { return done_; }
  /// Goes to the moment before a step.
  void goBefore(std::size_t step);

  /// Runs when the steps have changed.
  Handler changed;

 private:
  void addStep(SessionSnapshot now, std::size_t typing);
  void forgetOldest();
  void goTo(const SessionSnapshot& moment);

  Wizard& wizard_;
  std::size_t mostBytes_;
  std::deque<Step> steps_;  ///< oldest first
  bool forgotSteps_ = false;
  std::size_t done_ = 0;
  std::size_t bytes_ = 0;
  SessionSnapshot last_;  ///< at the last end of an action
  std::string nextName_;
};

/// Tables, names or flags differ, apart from spaces around texts.
bool changesProject(const ProjectSnapshot& before, const ProjectSnapshot& after);

/// "Add PRESSURE", "12 rows dropped by the change of directory".
std::string stepName(const ProjectSnapshot& before, const ProjectSnapshot& after);

}  // namespace kova
