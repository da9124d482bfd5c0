// SPDX-License-Identifier: MIT
// Unsaved work of a session that has ended: what restoring it would change, and restoring it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "core/session_snapshot.h"
#include "core/wizard.h"
#include "platform/code_page.h"
#include "review/preview.h"
#include "review/review_pages.h"

namespace kova {

/// What is known of a draft before all of it is read.
struct DraftSummary {
  std::string key;         ///< identifies the draft
  std::int32_t time = 0;   ///< seconds since 1970-01-01 00:00:00 UTC
  std::string directory;   ///< of the project; empty if there was none
  std::string exportName;  ///< in the form
  std::string unwritten;   ///< "2 properties, 1 removal"; empty: only the form has changed
  bool finishing = false;  ///< Done had begun to write
  std::string fault;       ///< why it can't be restored; empty if it can
};

struct Draft {
  DraftSummary summary;
  SessionSnapshot session;
  /// Rows of properties whose device names are those in their file.
  std::vector<std::size_t> listsOnDisk;
};

/// "PUMPS from 14:03 (3 properties)", with the date unless that was today.
std::string draftText(const DraftSummary& draft, std::int32_t now);

/// The message of the next start; empty without drafts. The first is the newest.
std::string keptMessage(const Wizard& wizard, std::vector<DraftSummary> drafts);

/// The session with the lists of names that the draft leaves on disk.
SessionSnapshot completeSession(const FileSystem& files, const Draft& draft);

/// What a session would write into its directory as it is now.
Preview previewOf(const Wizard& wizard, const Draft& draft, OverlayFiles& files);

/// The item of a draft in the list of drafts and backups.
ReviewGroup draftGroup(const Wizard& wizard, const Draft& draft);
/// The same for a draft with a fault.
ReviewGroup draftGroup(const Wizard& wizard, const DraftSummary& draft);

/// "exports.csv was written, history.csv was not": how far an interrupted Done came; empty if the
/// draft's Done had not begun or nothing is missing.
std::string interruptedMessage(const Wizard& wizard, const Draft& draft);

/// Backs up the files of the draft's directory and makes the draft the session. Throws Failure and
/// changes nothing if a file can't be backed up.
void restoreDraft(Wizard& wizard, const Draft& draft);

}  // namespace kova
