// SPDX-License-Identifier: MIT
// What the handlers work on.
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

/// The line below the form. It shows `statusText`.
struct StatusLine {
  std::string message;  ///< the last event
  /// Set by the view; runs after each message.
  Handler notifyView;
};

struct Wizard {
  Wizard(const Platform& machine, MessageBox show);

  Form1 form;
  WizardState state;
  Platform platform;
  MessageBox messageBox;

  StatusLine statusLine;
  /// Gets the number of files that a long operation has done; may be empty.
  std::function<void(std::size_t)> progress;

  /// Runs before Done writes the first table; may be empty.
  Handler beforeWriting;

  /// All windows of the program in the order of loading.
  std::vector<Window*> windows;
  /// Processes pending events.
  Handler giveEventsTheirTurn;
  Handler endProcess;  ///< when the running handler has returned
};

/// Message of a commit that the export table has no room for.
inline constexpr const char* tableFullMessage = "The property table is full";

/// Shows a message with an OK button and the default title.
void tell(const Wizard& wizard, const std::string& text);

/// The first 6 characters of LocalName, which are all that count.
std::string significantLocalName(const Wizard& wizard);

/// A row of the export table. Throws Failure beyond the last index. Valid until the next assignment
/// to a control.
PropertyRecord& exportRow(Wizard& wizard, std::int32_t index);

/// `findPropertyIndex` in the wizard's table, with the export name in the form.
std::int16_t findPropertyIndex(const Wizard& wizard, const std::string& prpName);

}  // namespace kova
