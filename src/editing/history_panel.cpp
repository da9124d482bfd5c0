// SPDX-License-Identifier: MIT
#include "editing/history_panel.h"

#include "tables/number_text.h"

namespace kova {

void HistoryCheck_Click(Wizard& wizard) {
  wizard.form.HistoryPanel.setEnabled(wizard.form.HistoryCheck.value() >= 1);
}

void fillInHistorySelections(Wizard& wizard, const std::string& expName,
                             const std::string& prpName) {
  const HistoryRecord* row = findHistory(wizard.state.project.historyTable,
                                         wizard.state.project.historyCount, expName, prpName);
  if (row == nullptr) return;
  Form1& form = wizard.form;
  form.ArchiveRateText.setText(plainNumberText(row->archiveRate));
  form.LongDepthText.setText(plainNumberText(row->longDepth));
  form.PollRateText.setText(plainNumberText(row->pollingRate));
  form.ShortDepthText.setText(plainNumberText(row->shortDepth));
  form.toleranceText.setText(row->tolerance);
}

}  // namespace kova
