// SPDX-License-Identifier: MIT
// The drafts of all sessions of this account, as files in the state folder.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "json/draft_json.h"
#include "platform/state_folder.h"

namespace kova {

class DraftFolder {
 public:
  /// The state folder in `home` is made with the first draft. The code page outlives the object.
  DraftFolder(Path home, const CodePage& codePage)
      : home_(std::move(home)), codePage_(codePage), writer_(codePage) {}

  /// Drafts of sessions that have ended, newest first. Removes those older than 30 days and those
  /// beyond the newest 20. Throws Failure if the state folder can't be used.
  std::vector<DraftSummary> kept(std::int32_t now);
  /// One of them. Throws Failure if it can't be read.
  Draft read(Wizard& wizard, const std::string& key) const;
  void remove(const std::string& key);

  /// Writes the draft of this session. One that is at least half a minute old stays next to it, as
  /// a loss of power may leave newer ones empty. Throws Failure and keeps the former draft.
  void write(Wizard& wizard, const DraftSummary& summary, const SessionSnapshot& session);
  void removeOwn();

 private:
  DraftSummary summaryOf(const std::string& key, std::int32_t time) const;
  std::string complete(const std::string& key) const;
  void moveOn(std::string_view from, std::string_view to);
  std::int32_t timeOf(const std::string& key) const;

  Path home_;
  std::optional<StateFolder> folder_;
  const CodePage& codePage_;
  DraftWriter writer_;
  Handle hold_;            ///< as long as it is open, the draft is that of a running session
  std::string key_;        ///< of this session; empty until it has a draft
  std::int32_t kept_ = 0;  ///< time of the last move of former drafts
};

}  // namespace kova
