// SPDX-License-Identifier: MIT
// The main window: its controls by name, and their design table.
#pragma once

#include <string_view>
#include <vector>

#include "controls/control_design.h"

namespace kova {

/// The names are those of the design table.
struct Form1 {
  Form1();

  Window window;
  TextField ExportName, LocalName, NumDevices, PropertyName, PropertyDescription, MaxValue,
      MinValue, Units, NumStepsText, InputDataSize, OutputDataSize, ProjectDir, ArchiveRateText,
      PollRateText, ArchiveHeartbeatText, ShortDepthText, LongDepthText, toleranceText,
      historyDeviceText, almwDeviceText, AlmSystemText, almSeverityText, almCountThreshText,
      almHiText, almLoText, almHiWarnText, almLoWarnText, almNormalText, almMaskText,
      deviceNamesInputText, deviceNumberInputText;
  CheckBox vbProject, cProject, ProcessCheck, HistoryCheck, AlarmWatchCheck, DeviceListCheck;
  OptionButton ServerOption, propertyOption;
  CommandButton AddProperty, RemoveProperty, Command1, EditCmd;
  Frame Frame1, Frame2, Frame5, HistoryPanel, AlarmWatchPanel, DevicePanel, Frame3, Frame4;
  Label Label1, Label2, Label3, Label4, Label5, Label6, Label7, Label8, Label9, Label10, Label11,
      NumStepsLabel, Label12, Label13, Label14, Label15, Label16, Label17, Label18, Label19,
      Label20, Label21, Label22, Label23, Label24, Label25, Label26, Label27, Label29, Label30,
      Label28;
  ListBox PropertyList;
  DropDownList AccessMode, ArrayTypeCombo, InputDataFormat, OutputDataFormat;
  Menu guide;
  MenuEntry srvGuide, prpGuide;
};

/// Captions of the menu. "&" precedes the access key.
inline constexpr std::string_view guideCaption = "&Guidance";
inline constexpr std::string_view srvGuideCaption = "&Device Server Guidance";
inline constexpr std::string_view prpGuideCaption = "&Property Guidance";

/// All controls with their design values, by container, in tab order within each.
std::vector<DesignedControl> designedControls(Form1& form);

}  // namespace kova
