// SPDX-License-Identifier: MIT
#include "identity/server_names.h"

#include <algorithm>
#include <array>
#include <string>

namespace kova {
namespace {

// In the order of comparison, the longest code first.
constexpr std::array<std::string_view, 8> prefixCodes = {"QVX", "GR", "KB", "M6",
                                                         "M7",  "S6", "S7", "ZA"};
constexpr std::size_t longestDrivingName = 3;

/// Removes a prefix code and one "-" or "." after it.
std::string_view withoutPrefix(std::string_view exportName) {
  const auto* const code =
      std::find_if(prefixCodes.begin(), prefixCodes.end(),
                   [&](std::string_view prefix) { return exportName.starts_with(prefix); });
  if (code != prefixCodes.end()) exportName.remove_prefix(code->size());
  if (exportName.starts_with('-') || exportName.starts_with('.')) exportName.remove_prefix(1);
  return exportName;
}

/// Index of the first row with this local name and another export name, or the row count.
std::int16_t findRowOfOtherServer(const Wizard& wizard, const std::string& localName) {
  const WizardState& state = wizard.state;
  const auto rows = state.project.exportTable.begin();
  const auto row =
      std::find_if(rows, rows + state.project.exportCount, [&](const PropertyRecord& property) {
        return property.localName == localName &&
               property.exportName != wizard.form.ExportName.text();
      });
  return static_cast<std::int16_t>(row - rows);
}

void deriveLocalName(Wizard& wizard) {
  WizardState& state = wizard.state;
  const std::string name(withoutPrefix(wizard.form.ExportName.text()));
  if (name.empty()) {
    state.localNameSuggestion.clear();
  } else if (name.size() <= longestDrivingName) {
    state.localNameSuggestion = name + std::string(localNameEnding);
  }
  const std::int16_t other = findRowOfOtherServer(wizard, state.localNameSuggestion);
  if (other < state.project.exportCount) {
    state.localNameSuggestion = name + "E" + std::to_string(other);
  }
  wizard.form.LocalName.setText(state.localNameSuggestion);
}

}  // namespace

void ExportName_Change(Wizard& wizard) {
  if (!wizard.state.localNameEdited) deriveLocalName(wizard);
  if (!wizard.state.projectDirEdited && !wizard.state.homeDrive.empty()) {
    wizard.form.ProjectDir.setText(wizard.state.homeDrive + pathSeparator +
                                   wizard.form.ExportName.text());
  }
}

void LocalName_Change(Wizard& wizard) {
  const std::string& text = wizard.form.LocalName.text();
  if (text.size() <= localNameLength) return;
  tell(wizard, "The local equipment module name will be truncated to initial 6 characters : " +
                   text.substr(0, localNameLength));
}

void LocalName_Click(Wizard& wizard) {
  wizard.state.localNameEdited = true;
}

}  // namespace kova
