// SPDX-License-Identifier: MIT
// A session at one moment: what the form shows, what the project holds, and the last message. The
// files on disk are not part of it: a step back does not undo what was written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "controls/shared_rows.h"
#include "core/wizard.h"

namespace kova {

/// What a control shows, by its kind.
using ControlState =
    std::variant<TextField::State, CheckBox::State, OptionButton::State, CommandButton::State,
                 Frame::State, Label::State, ListBox::State, DropDownList::State>;

/// A project at one moment, its inactive rows included: a later reading may pick up what they hold.
struct ProjectSnapshot {
  SharedRows<PropertyRecord> properties;
  SharedRows<HistoryRecord> history;
  SharedRows<AlarmWatchRecord> alarms;
  std::int16_t exportCount = 0;
  std::int16_t historyCount = 0;
  std::int16_t alarmCount = 0;
  Shared<DeviceNames> deviceNames;
  std::string projectPath;
  bool historyInUse = false;
  bool deviceNamesDefined = false;
};

struct SessionSnapshot {
  std::vector<ControlState> controls;  ///< in the order of the design table; empty: no session
  ProjectSnapshot project;
  std::string localNameSuggestion;
  bool projectDirEdited = false;
  bool localNameEdited = false;
  std::string message;  ///< of the status line
};

/// The session between two user actions. Shares what has not changed with `before`.
SessionSnapshot takeSession(Wizard& wizard, const SessionSnapshot& before = {});

/// Makes it the session of the wizard. Runs no handler and reads no file. Windows stay as they are,
/// and what is known of the directory's files is the newest.
void restoreSession(Wizard& wizard, const SessionSnapshot& session);

/// The form's fields, boxes and choices show the same.
bool haveSameForm(const SessionSnapshot& one, const SessionSnapshot& other);

/// Bytes that a session needs in addition to another one, with which it shares what is equal.
std::size_t bytesBeyond(const SessionSnapshot& session, const SessionSnapshot& other);

}  // namespace kova
