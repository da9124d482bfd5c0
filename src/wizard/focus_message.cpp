// SPDX-License-Identifier: MIT
#include "wizard/focus_message.h"

#include "core/status.h"
#include "editing/commit.h"
#include "editing/field_warnings.h"
#include "review/done_message.h"
#include "review/preview.h"

namespace kova {
namespace {

/// A change of the field's text opens another directory.
bool leadsToDirectory(const Wizard& wizard, const TextField& field) {
  if (&field == &wizard.form.ProjectDir) return true;
  return &field == &wizard.form.ExportName && !wizard.state.projectDirEdited &&
         !wizard.state.homeDrive.empty();
}

/// What Done does not write although the form shows it.
std::string formMessage(const Wizard& wizard, const Preview& done) {
  const std::string& name = wizard.form.PropertyName.text();
  if (name.empty()) return {};
  const std::int16_t index = findPropertyIndex(wizard, name);
  if (index >= wizard.state.project.exportCount) {
    return " " + name + " has not been added" +
           (done.addsHistoryRow ? "; Done writes only a history row for it."
                                : " and will not be written.");
  }
  const PropertyRecord& row = rowOf(wizard.state.project.exportTable, index);
  if (!formDiffersFrom(wizard, row)) return {};
  return " The form differs from " + name + ". These changes will not be written.";
}

std::string processMessage(const Wizard& wizard, const TextField& field) {
  const Form1& form = wizard.form;
  if (&field != &form.PropertyName || !form.ProcessCheck.ticked()) return {};
  return "Add creates a process of five rows.";
}

std::string joined(const std::string& one, const std::string& other) {
  return one.empty() || other.empty() ? one + other : one + ' ' + other;
}

std::string fieldMessage(const Wizard& wizard, const TextField& field) {
  const std::string text = joined(fieldWarning(wizard, field), processMessage(wizard, field));
  return leadsToDirectory(wizard, field) ? joined(text, dropWarning(wizard.state)) : text;
}

}  // namespace

std::string focusMessage(const Wizard& wizard, const ControlPointer& control) {
  if (const auto* field = std::get_if<TextField*>(&control)) return fieldMessage(wizard, **field);
  const auto* button = std::get_if<CommandButton*>(&control);
  if (button == nullptr || *button != &wizard.form.Command1) return {};
  const Preview done = preview(wizard);
  return doneMessage(wizard, done) +
         (wizard.state.project.exportCount > 0 ? formMessage(wizard, done) : "");
}

}  // namespace kova
