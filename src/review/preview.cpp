// SPDX-License-Identifier: MIT
#include "review/preview.h"

#include <algorithm>

#include "completion/done.h"
#include "core/project_entry.h"

namespace kova {
namespace {

struct NoPrograms : ProgramStarter {
  void start(std::string_view) override { throw Failure("a preview starts no programs"); }
};

/// Only what the writers look at: the form has no handlers here, and its list stays empty.
void copyForm(const Form1& from, Form1& to) {
  for (TextField Form1::*field :
       {&Form1::ExportName, &Form1::LocalName, &Form1::PropertyName, &Form1::ProjectDir,
        &Form1::OutputDataSize, &Form1::ArchiveRateText, &Form1::PollRateText,
        &Form1::ArchiveHeartbeatText, &Form1::ShortDepthText, &Form1::LongDepthText,
        &Form1::toleranceText, &Form1::historyDeviceText}) {
    (to.*field).setText((from.*field).text());
  }
  for (DropDownList Form1::*list : {&Form1::OutputDataFormat, &Form1::ArrayTypeCombo}) {
    for (const std::string& entry : (from.*list).entries()) (to.*list).add(entry);
    if ((from.*list).selectedIndex() >= 0) (to.*list).select((from.*list).selectedIndex());
    (to.*list).setEnabled((from.*list).enabled());
  }
}

template <class Table>
void copyRows(const Table& from, std::int16_t count, Table& to) {
  to.assign(from.begin(), from.begin() + count);
}

void copyState(const WizardState& from, WizardState& to) {
  to.exportCount = from.exportCount;
  to.historyCount = from.historyCount;
  to.alarmCount = from.alarmCount;
  copyRows(from.exportTable, from.exportCount, to.exportTable);
  copyRows(from.historyTable, from.historyCount, to.historyTable);
  copyRows(from.alarmTable, from.alarmCount, to.alarmTable);
  to.deviceNames = from.deviceNames;
  to.formatNames = from.formatNames;
  to.projectPath = from.projectPath;
  to.exportsFileName = from.exportsFileName;
  to.historyInUse = from.historyInUse;
  to.deviceNamesDefined = from.deviceNamesDefined;
  to.onDisk = from.onDisk;
}

/// It keeps what somebody else has written.
bool isCopy(const ProjectOnDisk& disk, const Path& file) {
  return std::any_of(disk.foreignChanges.begin(), disk.foreignChanges.end(),
                     [&](const ForeignChange& change) { return change.backup == file.leaf(); });
}

std::ptrdiff_t rowsIn(std::string_view table) {
  // Each line ends in one, the header's too; a field may hold a line feed of its own.
  return std::count(table.begin(), table.end(), '\r') - 1;
}

}  // namespace

Preview preview(const Wizard& wizard) {
  OverlayFiles files(wizard.platform.files);
  return preview(wizard, files);
}

Preview preview(const Wizard& wizard, OverlayFiles& files) {
  Preview result;
  result.folder = projectDirectory(wizard);
  if (wizard.state.exportCount == 0) return result;
  NoPrograms programs;
  const Platform platform{files, wizard.platform.environment, wizard.platform.clock, programs};
  Wizard trial(platform, [&](const Message& message) {
    result.failure = message.text;
    return message.enter;
  });
  copyForm(wizard.form, trial.form);
  copyState(wizard.state, trial.state);
  writeProject(trial, {});
  for (const Path& file : files.written()) {
    const std::string& content = result.files.emplace(file, files.read(file)).first->second;
    if (isCopy(trial.state.onDisk, file)) continue;
    result.tables.push_back(file);
    if (file.leaf() != historyFileName) continue;
    result.addsHistoryRow = rowsIn(content) > wizard.state.historyCount;
  }
  return result;
}

}  // namespace kova
