// SPDX-License-Identifier: MIT
// Keeps what is not yet written as a draft on disk, so that neither closing the window nor a crash
// loses it.
#pragma once

#include <QObject>
#include <QTimer>
#include <string>
#include <vector>

#include "desktop/undo_controls.h"
#include "json/draft_folder.h"

namespace kova {

class DraftKeeper : public QObject {
 public:
  /// All arguments outlive the object.
  DraftKeeper(Wizard& wizard, UndoControls& undo, DraftFolder& folder);

  /// Reports what earlier sessions have left; false if that is nothing.
  bool reportKept();
  /// A user action, or a step back or ahead, has ended. What has changed is on disk a second later
  /// at most.
  void actionEnded();
  /// Done begins to write. If it is interrupted, the draft tells what it had to write.
  void beginDone();
  /// The program ends. The draft stays unless Done has written everything.
  void end();

  /// Drafts of sessions that have ended, newest first, ready to be shown.
  std::vector<ReviewGroup> groups();
  /// The draft of a group can be restored.
  bool canRestore(const std::string& key) const;
  bool isDraft(const std::string& key) const { return find(key) != nullptr; }
  bool hasDrafts() const { return !kept_.empty(); }
  /// Makes the draft of a group the session. A failure is shown.
  void restore(const std::string& key);
  void confirmAndRemove(const std::string& key);
  void confirmAndRemoveAll();

 private:
  bool isWorthKeeping(const SessionSnapshot& now);
  void write(const SessionSnapshot& now, bool finishing);
  void reportFailure(const Failure& failure);
  bool isConfirmed(const std::string& question) const;
  const DraftSummary* find(const std::string& key) const;

  Wizard& wizard_;
  UndoControls& undo_;
  DraftFolder& folder_;
  QTimer soon_;
  SessionSnapshot shown_;    ///< the last one that showed what was read or written
  SessionSnapshot written_;  ///< the one on disk; without controls if there is none
  std::vector<DraftSummary> kept_;
  std::vector<std::string> restored_;  ///< keys; they go when Done has written everything
  bool failureReported_ = false;
  bool ended_ = false;
};

}  // namespace kova
