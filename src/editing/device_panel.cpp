// SPDX-License-Identifier: MIT
#include "editing/device_panel.h"

#include <algorithm>

#include "core/status.h"
#include "tables/number_text.h"

namespace kova {
namespace {

constexpr std::string_view lineEnd = "\r\n";

/// The first `count` names as shown, each with a line ending.
std::string displayText(const DeviceNames& devNames, std::size_t count) {
  std::string text;
  for (std::size_t k = 0; k < count; ++k) text.append(displayName(devNames, k)).append(lineEnd);
  return text;
}

void showList(Wizard& wizard, const std::string& text) {
  wizard.form.deviceNumberInputText.setText("0");
  wizard.form.deviceNamesInputText.setText(text);
}

void showServerList(Wizard& wizard) {
  const DeviceNames& names = wizard.state.project.deviceNames;
  wizard.state.project.deviceNamesDefined = true;
  showList(wizard, displayText(names, names.size()));
}

/// The data size can't be the length of a list.
class NoListSize : public Failure {
 public:
  using Failure::Failure;
};

/// Number of devices of a new list. Throws NoListSize.
std::size_t newListSize(const Wizard& wizard) {
  try {
    const std::int16_t size = toInt16(textValue(wizard.form.OutputDataSize.text()));
    if (size < 0) throw Failure("the data size must not be negative");
    return static_cast<std::size_t>(size);
  } catch (const Failure& failure) {
    throw NoListSize(failure.what());
  }
}

void showPropertyList(Wizard& wizard, std::int16_t index) {
  PropertyRecord& row = exportRow(wizard, index);
  std::size_t shown = row.devices.size();
  if (!row.hasDeviceList) {
    shown = newListSize(wizard);
    row.devices.edit().assign(shown + 1, std::string());
    row.hasDeviceList = true;
  }
  const std::string text = displayText(row.devices, shown);
  wizard.form.propertyOption.select();
  showList(wizard, text);
}

/// Number of devices from `first` on that have a name.
std::size_t namesFrom(const DeviceNames& names, std::size_t first) {
  const auto start = names.begin() + static_cast<std::ptrdiff_t>(std::min(first, names.size()));
  return static_cast<std::size_t>(
      std::count_if(start, names.end(), [](const std::string& name) { return !name.empty(); }));
}

void leavePropertyList(Wizard& wizard, std::int16_t index) {
  // A full table has no pending row.
  if (index < tableRows) exportRow(wizard, index).hasDeviceList = false;
  wizard.form.ServerOption.select();
  showServerList(wizard);
}

}  // namespace

void fillinDeviceNames(Wizard& wizard, const DeviceNames& devNames) {
  std::string text;
  for (const std::string& name : devNames) text.append(name).append(lineEnd);
  wizard.form.deviceNamesInputText.setText(text);
}

std::int16_t findLineFromMultilineText(std::string_view textStr, std::size_t textLen) {
  toInt16(static_cast<double>(textLen));
  const std::string_view before = textStr.substr(0, textLen);
  std::int16_t line = 0;
  for (auto end = before.find(lineEnd); end != std::string_view::npos;
       end = before.find(lineEnd, end + lineEnd.size())) {
    ++line;
  }
  return line;
}

std::int16_t findSelStartAtLine(std::string_view textStr, std::int16_t textline) {
  // An empty text has no lines at all.
  if (textStr.empty()) return 0;
  std::size_t start = 0;
  for (std::int16_t line = 0; line < textline; ++line) {
    const auto end = textStr.find(lineEnd, start);
    if (end == std::string_view::npos) {
      start = textStr.size() + lineEnd.size();
      break;
    }
    start = end + lineEnd.size();
  }
  return toInt16(static_cast<double>(start));
}

void storeServerDeviceNames(Wizard& wizard) {
  if (!wizard.form.ServerOption.selected()) return;
  const std::string& text = wizard.form.deviceNamesInputText.text();
  UpdateDevicesFile(text, wizard.state.project.deviceNames);
  reportLinesBeyond(wizard, linesBeyond(text, wizard.state.project.deviceNames));
  refreshStatus(wizard);
}

void DeviceListCheck_Click(Wizard& wizard) {
  const Form1& form = wizard.form;
  const std::int16_t index = findPropertyIndex(wizard, form.PropertyName.text());
  try {
    if (form.DeviceListCheck.ticked()) {
      showPropertyList(wizard, index);
    } else {
      leavePropertyList(wizard, index);
    }
  } catch (const NoListSize& failure) {
    wizard.form.DeviceListCheck.takeBack();
    reportNoList(wizard, failure.what());
  } catch (const Failure&) {
    return;  // a full table has no pending row
  }
  refreshStatus(wizard);
}

void ServerOption_Click(Wizard& wizard) {
  wizard.form.DeviceListCheck.setValue(0);
}

void deviceNamesInputText_Click(Wizard& wizard) {
  Form1& form = wizard.form;
  try {
    const std::int16_t line = findLineFromMultilineText(form.deviceNamesInputText.text(),
                                                        form.deviceNamesInputText.caret());
    form.deviceNumberInputText.setText(signedNumberText(std::int32_t{line}));
  } catch (const Failure&) {
    return;  // the caret is beyond the range of line numbers
  }
  if (form.ServerOption.selected()) wizard.state.project.deviceNamesDefined = true;
}

void deviceNamesInputText_LostFocus(Wizard& wizard) {
  storeServerDeviceNames(wizard);
}

void deviceNumberInputText_Change(Wizard& wizard) {
  TextField& box = wizard.form.deviceNamesInputText;
  try {
    const std::int16_t line = toInt16(textValue(wizard.form.deviceNumberInputText.text()));
    box.setCaret(static_cast<std::size_t>(findSelStartAtLine(box.text(), line)));
  } catch (const Failure&) {
    return;  // no such line: the caret stays
  }
}

void NumDevices_Change(Wizard& wizard) {
  WizardState& state = wizard.state;
  std::int16_t devices = 0;
  try {
    devices = toInt16(textValue(wizard.form.NumDevices.text()));
  } catch (const Failure&) {
    return;  // out of range: the arrays stay
  }
  if (devices < 1) return;
  const std::size_t dropped =
      namesFrom(state.project.deviceNames, static_cast<std::size_t>(devices));
  state.project.deviceNames.resize(static_cast<std::size_t>(devices));
  const std::string number = std::to_string(devices);
  std::for_each(state.project.exportTable.begin(),
                state.project.exportTable.begin() + state.project.exportCount,
                [&](PropertyRecord& row) { row.numModules = number; });
  if (dropped > 0 && state.directoriesBeingOpened.empty()) {
    reportNamesDropped(wizard, dropped, devices);
  }
  refreshStatus(wizard);
}

void NumDevices_LostFocus(Wizard& wizard) {
  if (wizard.state.project.deviceNamesDefined) return;
  wizard.form.ServerOption.select();
  wizard.form.DeviceListCheck.setValue(0);
  showServerList(wizard);
}

}  // namespace kova
