// SPDX-License-Identifier: MIT
#include "review/done_message.h"

#include "tables/quoting.h"

namespace kova {
namespace {

std::string rowCount(std::int16_t rows) {
  return counted(static_cast<std::size_t>(rows), "row");
}

/// " (2 rows)" after the two tables whose rows the engineer adds one by one.
std::string rowsOf(const Wizard& wizard, const Preview& done, const std::string& table) {
  const WizardState& state = wizard.state;
  if (table == exportsFileName) return " (" + rowCount(state.project.exportCount) + ")";
  if (table != historyFileName) return {};
  return " (" + rowCount(state.project.historyCount) +
         (done.addsHistoryRow ? " and " + formRowText(wizard) : "") + ")";
}

}  // namespace

std::string doneMessage(const Wizard& wizard, const Preview& done) {
  if (wizard.state.project.exportCount == 0) return "There are no properties: Done writes nothing.";
  std::string files;
  for (const Path& table : done.tables) {
    const std::string name = wizard.platform.files.text(table.leaf());
    files += (files.empty() ? "" : ", ") + name + rowsOf(wizard, done, name);
  }
  if (done.failure.empty()) return "Done writes " + files + ".";
  return "Done " + (files.empty() ? "" : "writes " + files + " and then ") +
         "fails: " + done.failure + ".";
}

std::string formRowText(const Wizard& wizard) {
  const std::string& name = wizard.form.PropertyName.text();
  return "one for " + (name.empty() ? "the property" : name) + ", the property in the form";
}

}  // namespace kova
