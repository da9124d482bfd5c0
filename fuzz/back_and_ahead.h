// SPDX-License-Identifier: MIT
// A step back, and one ahead again by way of a draft, after which nothing may differ.
#pragma once

#include <string>

#include "core/session_snapshot.h"
#include "json/draft_json.h"
#include "support/engineer.h"

namespace kova::fuzz {

/// All that a wizard shows and holds, as a draft has it and once more where a draft might forget
/// it; and what it would write.
struct Observed {
  std::string session;
  std::string disk;  ///< what depends on the files as well
};

class BackAndAhead {
 public:
  /// At the end of an action. With `atHome`, what Done would write is compared as well.
  void compare(test::Engineer& engineer, bool atHome, bool diskChanged);
  /// Where the next action begins.
  void start(test::Engineer& engineer, bool atHome);

 private:
  SessionSnapshot fromDraft(Wizard& wizard, const SessionSnapshot& session);

  const CodePage page_ = CodePage::windows1252();
  DraftWriter drafts_{page_};
  SessionSnapshot before_;
  Observed seen_;
  bool wasAtHome_ = false;
};

}  // namespace kova::fuzz
