// SPDX-License-Identifier: MIT
#include "completion/done_sentence.h"

#include <algorithm>

#include "core/form_texts.h"

namespace kova {
namespace {

std::string rowCount(std::size_t rows) {
  return std::to_string(rows) + (rows == 1 ? " row" : " rows");
}

std::size_t rowsIn(std::string_view table) {
  // All lines but the header end in one.
  return static_cast<std::size_t>(std::count(table.begin(), table.end(), '\n')) - 1;
}

/// " (2 rows and one for STATE, which stands in the form)". Throws Failure if a text of the form
/// makes no row.
std::string historyRows(const Wizard& wizard) {
  const WizardState& state = wizard.state;
  std::size_t written = 0;
  const ReplaceFile count = [&](const Path&, std::string_view table) { written = rowsIn(table); };
  WriteHistoryFile(count, {}, state.historyTable, state.historyCount, historyForm(wizard));
  const auto rows = static_cast<std::size_t>(state.historyCount);
  if (written == rows) return " (" + rowCount(rows) + ")";
  const std::string& name = wizard.form.PropertyName.text();
  return " (" + rowCount(rows) + " and one for " + (name.empty() ? "the property" : name) +
         ", which stands in the form)";
}

/// Walks the files in the order in which Done writes them. Throws Failure at one that it can't.
class Walk {
 public:
  explicit Walk(const Wizard& wizard) : wizard_(wizard) {}

  void run() {
    const WizardState& state = wizard_.state;
    next(state.exportsFileName);
    add(" (" + rowCount(static_cast<std::size_t>(state.exportCount)) + ")");
    if (state.historyInUse) {
      next(historyFileName);
      add(historyRows(wizard_));
    }
    if (state.alarmCount > 0) plain(alarmFileName);
    if (state.deviceNamesDefined) plain(serverDevicesFile);
    const auto rows = state.exportTable.begin();
    std::for_each(rows, rows + state.exportCount, [&](const PropertyRecord& row) {
      if (row.hasDeviceList) plain(namesFile(row.propertyName));
    });
  }
  const std::string& file() const { return file_; }
  const std::string& files() const { return files_; }

 private:
  void next(std::string_view file) {
    file_ = file;
    fileInFolder(wizard_.platform.files, wizard_.state.projectPath, file);
  }
  void add(const std::string& rows) { files_ += (files_.empty() ? "" : ", ") + file_ + rows; }
  void plain(std::string_view file) {
    next(file);
    add("");
  }

  const Wizard& wizard_;
  std::string file_;
  std::string files_;
};

}  // namespace

std::string doneSentence(const Wizard& wizard) {
  if (wizard.state.exportCount == 0) return "There are no properties: Done writes nothing.";
  Walk walk(wizard);
  try {
    walk.run();
    return "Done writes " + walk.files() + ".";
  } catch (const Failure& failure) {
    const std::string& files = walk.files();
    return "Done " + (files.empty() ? "" : "writes " + files + " and then ") + "can't write " +
           walk.file() + ": " + failure.what() + ".";
  }
}

}  // namespace kova
