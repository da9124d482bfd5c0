// SPDX-License-Identifier: MIT
#include "editing/selection.h"

#include <string>

#include "core/data_formats.h"
#include "core/status.h"
#include "editing/alarm_panel.h"
#include "editing/device_panel.h"
#include "editing/history_panel.h"
#include "tables/number_text.h"
#include "tables/range_prefix.h"

namespace kova {
namespace {

/// Fills the form step by step. Each step looks up its row again, since an assignment may have
/// opened another project.
class Filling {
 public:
  explicit Filling(Wizard& wizard) : wizard_(wizard), form_(wizard.form) {}

  void run() {
    identity();
    setText(form_.PropertyName, &PropertyRecord::propertyName);
    output();
    input();
    step([&] { form_.AccessMode.setText(text(&PropertyRecord::access)); });
    description();
    devices();
    tables();
    checkBoxes();
    panels();
  }

 private:
  template <class Action>
  void step(Action action) {
    try {
      action();
    } catch (const Failure&) {
      form_.AccessMode.setText("READ");
    }
  }

  /// The condition of an "if"; true if it fails.
  template <class Condition>
  bool test(Condition condition) {
    bool result = true;
    step([&] { result = condition(); });
    return result;
  }

  PropertyRecord& row() { return exportRow(wizard_, form_.PropertyList.selectedIndex()); }
  std::string text(std::string PropertyRecord::*field) { return row().*field; }
  void setText(TextField& control, std::string PropertyRecord::*field) {
    step([&] { control.setText(text(field)); });
  }
  void setFlag(CheckBox& box, bool PropertyRecord::*flag) {
    step([&] { box.setValue(row().*flag ? 1 : 0); });
  }

  void identity() {
    if (test([&] { return row().localName != significantLocalName(wizard_); })) {
      setText(form_.ExportName, &PropertyRecord::exportName);
      setText(form_.LocalName, &PropertyRecord::localName);
      setText(form_.NumDevices, &PropertyRecord::numModules);
    } else {
      step([&] { row().numModules = form_.NumDevices.text(); });
    }
  }

  void output() {
    setText(form_.OutputDataSize, &PropertyRecord::outputSize);
    step([&] { form_.OutputDataFormat.select(getFormatIndex(row().outputFormat)); });
    if (test([&] { return strictValue(row().outputSize) > 1; })) {
      form_.ArrayTypeCombo.setEnabled(true);
      step([&] { form_.ArrayTypeCombo.select(getArrayTypeIndex(row().outputFormat)); });
    } else {
      form_.ArrayTypeCombo.setEnabled(false);
    }
  }

  void input() {
    setText(form_.InputDataSize, &PropertyRecord::inputSize);
    step([&] { form_.InputDataFormat.select(getFormatIndex(row().inputFormat)); });
  }

  void description() {
    step([&] {
      const DescriptionParts parts = parseDescription(row().description);
      if (parts.hasPrefix) range(parts);
      form_.PropertyDescription.setText(parts.rest);
    });
  }

  void range(const DescriptionParts& parts) {
    step([&] {
      if (!parts.minimum) throw Failure("the range has no colon");
      form_.MinValue.setText(*parts.minimum);
    });
    if (parts.maximum) form_.MaxValue.setText(*parts.maximum);
    form_.Units.setText(parts.units);
  }

  void devices() {
    step([&] {
      PropertyRecord& property = row();
      if (property.hasDeviceList) return;
      const FileSystem& files = wizard_.platform.files;
      WizardState& state = wizard_.state;
      const std::string file = namesFile(property.propertyName);
      const ReadResult read =
          tablesIn(files, state.project.projectPath)(file, [&](std::string_view content) {
            return ReadDevicesFile(content, form_.NumDevices.text(), property.devices.edit());
          });
      reportNamesSkipped(wizard_, file, read.skipped);
      if (read.rows < 1) return;
      property.hasDeviceList = true;
      state.onDisk.nameLists.insert_or_assign(
          property.propertyName, read.skipped > 0 ? namesIn(files, state.project.projectPath, file)
                                                  : PackedTexts(property.devices));
    });
    step([&] {
      const PropertyRecord& property = row();
      fillinDeviceNames(wizard_, property.hasDeviceList ? property.devices.get()
                                                        : wizard_.state.project.deviceNames);
    });
  }

  void tables() {
    const WizardState& state = wizard_.state;
    step([&] {
      PropertyRecord& property = row();
      property.hasHistory |=
          PrpIsInHistoryTable(state.project.historyTable, state.project.historyCount,
                              property.exportName, property.propertyName);
      property.hasAlarmWatch |= PrpIsWatchTable(state.project.alarmTable, state.project.alarmCount,
                                                property.propertyName);
    });
  }

  void checkBoxes() {
    setFlag(form_.DeviceListCheck, &PropertyRecord::hasDeviceList);
    setFlag(form_.AlarmWatchCheck, &PropertyRecord::hasAlarmWatch);
    setFlag(form_.HistoryCheck, &PropertyRecord::hasHistory);
  }

  void panels() {
    if (form_.AlarmWatchCheck.ticked()) {
      step([&] { fillInAlarmSelections(wizard_, row().localName, row().propertyName); });
    }
    if (form_.HistoryCheck.ticked()) {
      step([&] { fillInHistorySelections(wizard_, row().exportName, row().propertyName); });
    }
  }

  Wizard& wizard_;
  Form1& form_;
};

/// Drops a device list prepared for a new property, unless the selected row is the one that a
/// commit has just added, which still needs it.
void giveUpPreparedList(Wizard& wizard) {
  const std::int16_t pendingRow = wizard.state.project.exportCount;
  if (pendingRow >= tableRows || wizard.form.PropertyList.selectedIndex() >= pendingRow) return;
  exportRow(wizard, pendingRow) = PropertyRecord{};
}

}  // namespace

void fillPropertySelections(Wizard& wizard) {
  Filling(wizard).run();
}

void PropertyList_Click(Wizard& wizard) {
  giveUpPreparedList(wizard);
  fillPropertySelections(wizard);
}

}  // namespace kova
