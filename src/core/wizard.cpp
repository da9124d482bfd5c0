// SPDX-License-Identifier: MIT
#include "core/wizard.h"

#include <utility>

namespace kova {

Wizard::Wizard(const Platform& machine, MessageBox show)
    : platform(machine), messageBox(std::move(show)), windows{&form.window} {}

void tell(const Wizard& wizard, const std::string& text) {
  wizard.messageBox({.text = text});
}

std::string significantLocalName(const Wizard& wizard) {
  return storedLocalName(wizard.form.LocalName.text());
}

PropertyRecord& exportRow(Wizard& wizard, std::int32_t index) {
  if (index < 0 || index >= tableRows) throw Failure("the property table has no such row");
  return rowOf(wizard.state.project.exportTable, index);
}

std::int16_t findPropertyIndex(const Wizard& wizard, const std::string& prpName) {
  return findPropertyIndex(wizard.state.project.exportTable, wizard.state.project.exportCount,
                           wizard.form.ExportName.text(), prpName);
}

}  // namespace kova
