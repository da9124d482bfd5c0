// SPDX-License-Identifier: MIT
// The wizard as its handlers see it.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "controls/controls.h"
#include "core/main_window.h"
#include "core/wizard_state.h"
#include "platform/platform.h"

namespace kova {

/// The line under the form. Its text is statusText.
struct StatusLine {
  std::string message;  ///< what just happened
  /// The view: runs after each message.
  Handler notifyView;
};

/// All that a handler works on.
struct Wizard {
  Wizard(const Platform& machine, MessageBox show);

  Form1 form;
  WizardState state;
  Platform platform;
  MessageBox messageBox;

  StatusLine statusLine;
  /// Told how many files a long act has done so far; empty where nobody watches.
  std::function<void(std::size_t)> progress;

  /// All windows of the program in the order in which they are loaded.
  std::vector<Window*> windows;
  /// Lets waiting events have their turn, and ends the process once the running handler is through.
  Handler giveEventsTheirTurn;
  Handler endProcess;
};

/// Message of a commit for which the export table has no room.
inline constexpr const char* tableFullMessage = "The property table is full";

/// Shows a statement with an OK button and no title of its own.
void tell(const Wizard& wizard, const std::string& text);

/// The first 6 characters of the text of LocalName: as much of it as counts.
std::string significantLocalName(const Wizard& wizard);

/// A row of the export table. Throws Failure beyond the last index. Valid until the next assignment
/// to a control.
PropertyRecord& exportRow(Wizard& wizard, std::int32_t index);

/// findPropertyIndex of the wizard's table, under the export name in the form.
std::int16_t findPropertyIndex(const Wizard& wizard, const std::string& prpName);

}  // namespace kova
