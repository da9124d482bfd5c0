// SPDX-License-Identifier: MIT
#include "core/status.h"

#include <algorithm>

namespace kova {
namespace {

std::string unwritten(const WizardState& state) {
  const auto live = state.exportTable.begin();
  const auto rows = std::count_if(live, live + state.exportCount,
                                  [](const PropertyRecord& row) { return row.changed; });
  std::string text;
  if (rows > 0) {
    text = " " + counted(static_cast<std::size_t>(rows), "row", "rows") + " not yet written";
  }
  if (state.removedRows > 0) {
    text += text.empty() ? " " : ", ";
    text += counted(static_cast<std::size_t>(state.removedRows), "removal", "removals") +
            " not yet written";
  }
  return text.empty() ? text : text + ".";
}

}  // namespace

void report(Wizard& wizard, const std::string& sentence) {
  wizard.statusLine.setCaption(std::string(stripBlanks(sentence)) + unwritten(wizard.state));
}

std::string counted(std::size_t number, std::string_view singular, std::string_view plural) {
  return std::to_string(number) + " " + std::string(number == 1 ? singular : plural);
}

std::string stopSentence(std::string_view name, const ReadResult& result) {
  if (!result.stop || result.stop->line == 0) return {};
  return " Reading " + std::string(name) + " stopped at line " + std::to_string(result.stop->line) +
         ": " + result.stop->reason + ".";
}

std::string stopSentence(const FileSystem& files, const Path& file, std::string_view name,
                         const ReadResult& result) {
  const bool unopened = result.stop && result.stop->line == 0;
  if (!unopened) return stopSentence(name, result);
  const bool isThere = files.fileExists(file) || files.folderExists(file);
  return isThere ? " " + std::string(name) + " can't be read: " + result.stop->reason + "." : "";
}

}  // namespace kova
