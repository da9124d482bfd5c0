// SPDX-License-Identifier: MIT
#include "desktop/layout_template.h"

namespace kova {

std::vector<LayoutTemplate> mainWindowTemplates() {
  return {
      {"Form1", R"(Frame2       <               Frame5
                   Frame1       <               PropertyList
                   ^            ^               listButtons
                   ^            ^               lastStep
                   HistoryPanel AlarmWatchPanel DevicePanel)"},
      {"listButtons", R"(RemoveProperty AddProperty EditCmd -)"},
      {"lastStep", R"(- vbProject Command1
                      - cProject  ^)"},
      {"Frame2", R"(Label1 ExportName Label2 LocalName Label3 NumDevices -)"},
      {"Frame1",
       R"(Label4     PropertyName Label8         PropertyDescription <               <
          Label6     AccessMode   Label9         MaxValue            Label10         MinValue
          dataLabels Frame3       Frame4         <                   Label11         Units
          ^          ^            ^              ^                   DeviceListCheck <
          ^          ^            ^              ^                   AlarmWatchCheck <
          ^          ^            ^              ^                   HistoryCheck    <
          Label12    <            ArrayTypeCombo <                   ProcessCheck    <
          -          -            -              -                   NumStepsLabel   NumStepsText
          -)"},
      {"dataLabels", R"(Label7
                        Label5)"},
      {"Frame3", R"(InputDataFormat
                    InputDataSize)"},
      {"Frame4", R"(OutputDataFormat
                    OutputDataSize)"},
      {"Frame5", R"(ProjectDir)"},
      {"HistoryPanel", R"(Label19 historyDeviceText    -
                          Label13 ArchiveRateText      -
                          Label14 PollRateText         -
                          Label15 ArchiveHeartbeatText -
                          Label16 ShortDepthText       -
                          Label17 LongDepthText        -
                          Label18 toleranceText        -
                          -)"},
      {"AlarmWatchPanel", R"(Label20 almwDeviceText     -       -             -
                             Label21 AlmSystemText      -       -             -
                             Label22 almSeverityText    -       -             -
                             Label23 almCountThreshText -       -             -
                             Label24 almHiText          Label26 almHiWarnText -
                             Label25 almLoText          Label27 almLoWarnText -
                             Label29 almNormalText      Label30 almMaskText   -
                             -)"},
      {"DevicePanel", R"(ServerOption         propertyOption        -
                         Label28              deviceNumberInputText -
                         deviceNamesInputText <                     <)"},
  };
}

std::vector<LayoutTemplate> guidedDialogTemplates() {
  return {
      {"ExportHelper", R"(helperLabel
                          ParamText
                          dialogButtons)"},
      {"dialogButtons", R"(- lastParam nextParam DoneParam)"},
  };
}

}  // namespace kova
