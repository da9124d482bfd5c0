// SPDX-License-Identifier: MIT
#include "back_and_ahead.h"

#include "core/status.h"
#include "harness.h"
#include "review/preview.h"

namespace kova::fuzz {
namespace {

Observed observe(test::Engineer& engineer, bool atHome) {
  static const CodePage page = CodePage::windows1252();
  Wizard& wizard = engineer.program.wizard;
  const WizardState& state = wizard.state;
  const Project& project = state.project;
  Observed seen;
  // The whole session, nothing of it shared with another one.
  seen.session = DraftWriter(page).write(wizard, {}, takeSession(wizard), {});
  seen.session += project.projectPath + state.localNameSuggestion + wizard.statusLine.message;
  for (const long value :
       {long{project.exportCount}, long{project.historyCount}, long{project.alarmCount},
        long{project.historyInUse}, long{project.deviceNamesDefined}, long{state.projectDirEdited},
        long{state.localNameEdited}}) {
    seen.session += std::to_string(value) + ' ';
  }
  for (const std::string& name : project.deviceNames) seen.session += name + '\n';
  seen.disk = statusText(wizard) + dropWarning(state);
  if (!atHome) return seen;
  const Preview shown = preview(wizard);
  seen.disk += shown.failure;
  for (const auto& [path, content] : shown.files) seen.disk += path.native + '\n' + content;
  return seen;
}

}  // namespace

void BackAndAhead::start(test::Engineer& engineer, bool atHome) {
  before_ = takeSession(engineer.program.wizard, before_);
  wasAtHome_ = atHome;
  seen_ = observe(engineer, atHome);
}

SessionSnapshot BackAndAhead::fromDraft(Wizard& wizard, const SessionSnapshot& session) {
  // No list of names is left on disk, where somebody else may have changed it.
  const std::string& content = drafts_.write(wizard, {}, session, {});
  SessionSnapshot read = readDraft(wizard, content, page_).session;
  read.message = session.message;
  return read;
}

void BackAndAhead::compare(test::Engineer& engineer, bool atHome, bool diskChanged) {
  Wizard& wizard = engineer.program.wizard;
  if (wizard.state.quitInProgress) return;
  const std::size_t messages = engineer.messages.size();
  const SessionSnapshot after = takeSession(wizard, before_);
  const Observed then = observe(engineer, atHome);
  restoreSession(wizard, before_);
  const Observed back = observe(engineer, wasAtHome_);
  require(back.session == seen_.session, "a step back restores the session");
  require(diskChanged || back.disk == seen_.disk, "and what Done would write");
  restoreSession(wizard, fromDraft(wizard, after));
  const Observed ahead = observe(engineer, atHome);
  require(ahead.session == then.session, "a step ahead restores the session");
  require(ahead.disk == then.disk, "and what Done would then write");
  require(engineer.messages.size() == messages, "neither shows a message");
}

}  // namespace kova::fuzz
