// SPDX-License-Identifier: MIT
#include "editing/history_panel.h"

#include "core/form_fields.h"

namespace kova {

void HistoryCheck_Click(Wizard& wizard) {
  wizard.form.HistoryPanel.setEnabled(wizard.form.HistoryCheck.value() >= 1);
}

void fillInHistorySelections(Wizard& wizard, const std::string& expName,
                             const std::string& prpName) {
  const HistoryRecord* row = findHistory(wizard.state.project.historyTable,
                                         wizard.state.project.historyCount, expName, prpName);
  if (row != nullptr) showRow(wizard.form, *row);
}

}  // namespace kova
