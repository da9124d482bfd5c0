// SPDX-License-Identifier: MIT
#include "wizard/focus_sentence.h"

#include "core/status.h"
#include "editing/field_warnings.h"

namespace kova {
namespace {

/// A change of the field's text leads the tables to another directory.
bool leadsToDirectory(const Wizard& wizard, const TextField& field) {
  if (&field == &wizard.form.ProjectDir) return true;
  return &field == &wizard.form.ExportName && !wizard.state.projectDirEdited &&
         !wizard.state.homeDrive.empty();
}

std::string fieldSentence(const Wizard& wizard, const TextField& field) {
  std::string text = fieldWarning(wizard, field);
  if (!leadsToDirectory(wizard, field)) return text;
  const std::string drops = dropWarning(wizard.state);
  return text.empty() || drops.empty() ? text + drops : text + ' ' + drops;
}

}  // namespace

std::string focusSentence(const Wizard& wizard, const ControlPointer& control) {
  if (const auto* field = std::get_if<TextField*>(&control)) return fieldSentence(wizard, **field);
  return {};
}

}  // namespace kova
