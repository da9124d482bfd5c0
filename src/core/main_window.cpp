// SPDX-License-Identifier: MIT
#include "core/main_window.h"

#include <array>

namespace kova {
namespace {

// Tool tips that a field shares with its label.
constexpr std::string_view archiveRateTip =
    "Data will be committed to disk not more frequently than this interval";
constexpr std::string_view pollRateTip =
    "The local history server will poll the given property at this interval";
constexpr std::string_view heartbeatTip =
    "Data will be committed to disk no less frequently than this interval";
constexpr std::string_view shortDepthTip =
    "Data will be kept in short-term ring buffer with this depth at the polling rate";
constexpr std::string_view longDepthTip =
    "Data will be kept on the local disk for at least this period";
constexpr std::string_view toleranceTip =
    "Data within tolerance (percent or absolute) will not be committed to disk (except at the "
    "heartbeat)";
constexpr std::string_view historyDeviceTip =
    "The device name to be used by the local history server";
constexpr std::string_view almwDeviceTip = "The device name to be used by the local alarm server";
constexpr std::string_view alarmSystemTip = "System-wide Identifier for this category of alarms";
constexpr std::string_view severityTip = "severity to be used for too high or too low";
constexpr std::string_view countThreshTip =
    "Alarm will only be set when it appears this many times consecutively";
constexpr std::string_view almHiTip = "Threshold for value too high alarm";
constexpr std::string_view almLoTip = "Threshold for value too Low alarm";
constexpr std::string_view almHiWarnTip = "Threshold for warn too high alarm";
constexpr std::string_view almLoWarnTip = "Threshold for warn too Low alarm";

// Pointer, name, kind, container, caption or text with its access key, tab index, {left, top,
// width, height}, tool tip, enabled at start, ticked or selected at start, accessible name, hint
// while empty.
//
// Alt+G opens the menu. There are more labels than letters: those used first have an access key.
// The Tab key reaches all fields.
using enum ControlKind;

// Laid out by hand: the formatter would put each value of a long row on a line of its own.
// clang-format off
constexpr auto design = std::to_array<DesignRow<Form1>>({
    {&Form1::Frame1, {"Frame1", frame, "", "Property Information", 0, {90, 1050, 7935, 3405}}},
    {&Form1::Frame2, {"Frame2", frame, "", "Device Server Information", 1, {60, 90, 7935, 885}}},
    {&Form1::PropertyList, {"PropertyList", listBox, "", "", 28, {8100, 750, 3885, 2400},
        "", true, 0, "Properties", "No properties yet: fill in the form and press Add"}},
    {&Form1::AddProperty, {"AddProperty", commandButton, "", {"Add", 'A'}, 29,
        {8970, 3180, 765, 375}}},
    {&Form1::RemoveProperty, {"RemoveProperty", commandButton, "", {"Remove", 'R'}, 30,
        {8130, 3180, 795, 375}}},
    {&Form1::Command1, {"Command1", finishButton, "", {"Done", 'D'}, 31, {9780, 3570, 795, 375}}},
    {&Form1::Frame5, {"Frame5", frame, "", "Project Directory", 32, {8100, 90, 3885, 615}}},
    {&Form1::vbProject, {"vbProject", checkBox, "", {"VB Project", 'J'}, 34,
        {10650, 3210, 1185, 315}, "", true, 1}},
    {&Form1::cProject, {"cProject", checkBox, "", {"C Project", 'C'}, 35,
        {10650, 3570, 1185, 285}}},
    {&Form1::HistoryPanel, {"HistoryPanel", frame, "", "History Panel", 44,
        {120, 4500, 3705, 2715}}},
    {&Form1::AlarmWatchPanel, {"AlarmWatchPanel", frame, "", "Alarm Watch Panel", 45,
        {3870, 4500, 4155, 2715}}},
    {&Form1::DevicePanel, {"DevicePanel", frame, "", "Device Panel", 46, {8100, 3960, 3855, 3255}}},
    {&Form1::EditCmd, {"EditCmd", commandButton, "", {"Edit", 'E'}, 82, {9780, 3180, 795, 375}}},
    {&Form1::Label1, {"Label1", label, "Frame2", {"Export Name", 'X'}, 2, {120, 390, 1035, 315}}},
    {&Form1::ExportName, {"ExportName", textBox, "Frame2", "", 3, {1230, 330, 1335, 345}}},
    {&Form1::Label2, {"Label2", label, "Frame2", {"Local Name", 'O'}, 4, {2850, 420, 975, 255}}},
    {&Form1::LocalName, {"LocalName", textBox, "Frame2", "", 5, {3840, 300, 1365, 345}}},
    {&Form1::Label3, {"Label3", label, "Frame2", {"Number of Devices", 'B'}, 6,
        {5460, 420, 1485, 285}}},
    {&Form1::NumDevices, {"NumDevices", textBox, "Frame2", "", 7, {7110, 330, 675, 345}}},
    {&Form1::Label4, {"Label4", label, "Frame1", {"Property Name", 'P'}, 8, {150, 360, 1155, 285}}},
    {&Form1::Label5, {"Label5", label, "Frame1", {"Max Data Size", 'Z'}, 9,
        {240, 2220, 1035, 255}}},
    {&Form1::Label6, {"Label6", label, "Frame1", "Access", 10, {660, 840, 585, 255}}},
    {&Form1::Label7, {"Label7", label, "Frame1", {"Data Format", 'F'}, 11, {330, 1650, 1005, 255}}},
    {&Form1::Label8, {"Label8", label, "Frame1", {"Description", 'I'}, 12, {3480, 360, 885, 255}}},
    {&Form1::Label9, {"Label9", label, "Frame1", {"Max Value", 'M'}, 13, {3510, 810, 855, 255}}},
    {&Form1::Label10, {"Label10", label, "Frame1", {"Min Value", 'N'}, 14, {5760, 840, 795, 225}}},
    {&Form1::Label11, {"Label11", label, "Frame1", {"Units", 'U'}, 15, {5790, 1290, 495, 255}}},
    {&Form1::PropertyName, {"PropertyName", textBox, "Frame1", "", 16, {1350, 270, 1995, 375}}},
    {&Form1::PropertyDescription, {"PropertyDescription", textBox, "Frame1", "", 17,
        {4410, 270, 3375, 375}}},
    {&Form1::AccessMode, {"AccessMode", comboBox, "Frame1", "", 18, {1350, 780, 1935, 315}}},
    {&Form1::Frame3, {"Frame3", frame, "Frame1", "Data Input", 19, {1380, 1290, 1935, 1365}}},
    {&Form1::Frame4, {"Frame4", frame, "Frame1", "Data Output", 21, {3390, 1290, 1965, 1365}}},
    {&Form1::MaxValue, {"MaxValue", textBox, "Frame1", "", 25, {4410, 780, 945, 315}}},
    {&Form1::MinValue, {"MinValue", textBox, "Frame1", "", 26, {6720, 780, 1005, 315}}},
    {&Form1::Units, {"Units", textBox, "Frame1", "", 27, {6360, 1230, 1395, 315}}},
    {&Form1::ProcessCheck, {"ProcessCheck", checkBox, "Frame1", {"Property is Process", 'S'}, 36,
        {6090, 2550, 1725, 345},
        "Check this if this property should supply .START, .STOP, PAUSE, .ABORT properties"}},
    {&Form1::NumStepsText, {"NumStepsText", textBox, "Frame1", "0", 37, {7020, 2970, 795, 315},
        "", false}},
    {&Form1::NumStepsLabel, {"NumStepsLabel", label, "Frame1", "Number Steps :", 38,
        {5760, 3030, 1185, 255}, "", false}},
    {&Form1::HistoryCheck, {"HistoryCheck", checkBox, "Frame1", {"Keep History", 'K'}, 39,
        {6090, 2280, 1725, 285}, "Check this to keep a local history of this property"}},
    {&Form1::AlarmWatchCheck, {"AlarmWatchCheck", checkBox, "Frame1", {"Alarm Watch", 'W'}, 40,
        {6090, 1950, 1725, 285},
        "Check this to allow automatic alarm setting according to the supplied thresholds"}},
    {&Form1::DeviceListCheck, {"DeviceListCheck", checkBox, "Frame1", {"Device List", 'L'}, 41,
        {6090, 1620, 1665, 315},
        "Check this if this Property should keep a device list independent of the device server"}},
    {&Form1::ArrayTypeCombo, {"ArrayTypeCombo", comboBox, "Frame1", "", 42,
        {3540, 2850, 1815, 315}}},
    {&Form1::Label12, {"Label12", label, "Frame1", {"Output ArrayType :", 'Y'}, 43,
        {1950, 2880, 1485, 315}}},
    {&Form1::InputDataFormat, {"InputDataFormat", comboBox, "Frame3", "", 20,
        {150, 270, 1665, 315}}},
    {&Form1::InputDataSize, {"InputDataSize", textBox, "Frame3", "", 23, {120, 870, 1695, 345}}},
    {&Form1::OutputDataFormat, {"OutputDataFormat", comboBox, "Frame4", "", 22,
        {120, 270, 1695, 315}}},
    {&Form1::OutputDataSize, {"OutputDataSize", textBox, "Frame4", "", 24, {120, 840, 1695, 375}}},
    {&Form1::ProjectDir, {"ProjectDir", textBox, "Frame5", "", 33, {120, 180, 3675, 375}}},
    {&Form1::ArchiveRateText, {"ArchiveRateText", textBox, "HistoryPanel", "10", 47,
        {2130, 630, 585, 315}, archiveRateTip}},
    {&Form1::Label13, {"Label13", label, "HistoryPanel", "Archive Rate (secs)", 48,
        {630, 630, 1395, 255}, archiveRateTip}},
    {&Form1::PollRateText, {"PollRateText", textBox, "HistoryPanel", "1000", 49,
        {2130, 1020, 585, 285}, pollRateTip}},
    {&Form1::Label14, {"Label14", label, "HistoryPanel", "Polling Rate (msec)", 50,
        {660, 1020, 1395, 315}, pollRateTip}},
    {&Form1::ArchiveHeartbeatText, {"ArchiveHeartbeatText", textBox, "HistoryPanel", "18000", 51,
        {2130, 1350, 615, 315}, heartbeatTip}},
    {&Form1::Label15, {"Label15", label, "HistoryPanel", "Archive Heartbeat (secs)", 52,
        {270, 1380, 1815, 255}, heartbeatTip}},
    {&Form1::ShortDepthText, {"ShortDepthText", textBox, "HistoryPanel", "600", 53,
        {2130, 1710, 495, 285}, shortDepthTip}},
    {&Form1::Label16, {"Label16", label, "HistoryPanel", "Ringbuffer Depth", 54,
        {780, 1710, 1305, 285}, shortDepthTip}},
    {&Form1::LongDepthText, {"LongDepthText", textBox, "HistoryPanel", "1", 55,
        {2130, 2040, 495, 285}, longDepthTip}},
    {&Form1::Label17, {"Label17", label, "HistoryPanel", "Long term Depth (months)", 56,
        {180, 2070, 1905, 285}, longDepthTip}},
    {&Form1::toleranceText, {"toleranceText", textBox, "HistoryPanel", "10%", 57,
        {2130, 2370, 495, 285}, toleranceTip}},
    {&Form1::Label18, {"Label18", label, "HistoryPanel", "Tolerance", 58,
        {1140, 2400, 885, 255}, toleranceTip}},
    {&Form1::historyDeviceText, {"historyDeviceText", textBox, "HistoryPanel", "#0", 59,
        {2130, 300, 855, 285}, historyDeviceTip}},
    {&Form1::Label19, {"Label19", label, "HistoryPanel", "Calling Device Name", 60,
        {510, 300, 1545, 255}, historyDeviceTip}},
    {&Form1::almwDeviceText, {"almwDeviceText", textBox, "AlarmWatchPanel", "#0", 61,
        {1740, 240, 1005, 285}, almwDeviceTip}},
    {&Form1::Label20, {"Label20", label, "AlarmWatchPanel", "Calling Device Name", 62,
        {120, 270, 1575, 285}, almwDeviceTip}},
    {&Form1::AlmSystemText, {"AlmSystemText", textBox, "AlarmWatchPanel", "0", 63,
        {1740, 570, 1035, 315}, alarmSystemTip}},
    {&Form1::Label21, {"Label21", label, "AlarmWatchPanel", "Alarm System ID", 64,
        {390, 600, 1245, 255}, alarmSystemTip}},
    {&Form1::almSeverityText, {"almSeverityText", textBox, "AlarmWatchPanel", "10", 65,
        {1740, 930, 405, 285}, severityTip}},
    {&Form1::Label22, {"Label22", label, "AlarmWatchPanel", "Severity (high)", 66,
        {540, 960, 1125, 255}, severityTip}},
    {&Form1::almCountThreshText, {"almCountThreshText", textBox, "AlarmWatchPanel", "3", 67,
        {1740, 1260, 645, 315}, countThreshTip}},
    {&Form1::Label23, {"Label23", label, "AlarmWatchPanel", "Counts Threshold", 68,
        {390, 1320, 1275, 255}, countThreshTip}},
    {&Form1::almHiText, {"almHiText", textBox, "AlarmWatchPanel", "0", 69,
        {1740, 1620, 765, 285}, almHiTip}},
    {&Form1::Label24, {"Label24", label, "AlarmWatchPanel", {"Value too high", 'H'}, 70,
        {570, 1680, 1065, 255}, almHiTip}},
    {&Form1::almLoText, {"almLoText", textBox, "AlarmWatchPanel", "0", 71,
        {1740, 1980, 765, 285}, almLoTip}},
    {&Form1::Label25, {"Label25", label, "AlarmWatchPanel", "Value too low", 72,
        {630, 2010, 1035, 255}, almLoTip}},
    {&Form1::almHiWarnText, {"almHiWarnText", textBox, "AlarmWatchPanel", "0", 73,
        {3360, 1650, 645, 285}, almHiWarnTip}},
    {&Form1::Label26, {"Label26", label, "AlarmWatchPanel", "warning", 74,
        {2700, 1650, 585, 255}, almHiWarnTip}},
    {&Form1::almLoWarnText, {"almLoWarnText", textBox, "AlarmWatchPanel", "0", 75,
        {3360, 1980, 675, 285}, almLoWarnTip}},
    {&Form1::Label27, {"Label27", label, "AlarmWatchPanel", "warning", 76,
        {2700, 1980, 615, 285}, almLoWarnTip}},
    {&Form1::almNormalText, {"almNormalText", textBox, "AlarmWatchPanel", "0", 83,
        {1740, 2340, 765, 285}, "Required value for no alarm (only active if mask is non-Zero)"}},
    {&Form1::almMaskText, {"almMaskText", textBox, "AlarmWatchPanel", "0", 84,
        {3360, 2310, 675, 315},
        "If non-Zero applies to read data and activates comparison to Normal value"}},
    {&Form1::Label29, {"Label29", label, "AlarmWatchPanel", "Value normal", 85,
        {690, 2340, 1005, 285}}},
    {&Form1::Label30, {"Label30", label, "AlarmWatchPanel", "mask", 86, {2790, 2340, 435, 255}}},
    {&Form1::deviceNamesInputText, {"deviceNamesInputText", multiLineTextBox, "DevicePanel",
        "Device 0", 77, {90, 630, 3675, 2505},
        "", true, 0, "Device names", "One device name per line"}},
    {&Form1::deviceNumberInputText, {"deviceNumberInputText", textBox, "DevicePanel", "0", 78,
        {3180, 210, 465, 345}}},
    {&Form1::Label28, {"Label28", label, "DevicePanel", "selected", 79, {2490, 270, 645, 225}}},
    {&Form1::ServerOption, {"ServerOption", optionButton, "DevicePanel", {"Server", 'V'}, 80,
        {150, 300, 915, 285}, "", true, 1}},
    {&Form1::propertyOption, {"propertyOption", optionButton, "DevicePanel", {"Property", 'T'}, 81,
        {1170, 330, 1155, 255}}},
});
// clang-format on

}  // namespace

std::vector<DesignedControl> designedControls(Form1& form) {
  return designedControls(form, design);
}

Form1::Form1() {
  window.title = "KOVA Device Server Setup Wizard";
  OptionButton::group({&ServerOption, &propertyOption});
  applyDesign(designedControls(*this));
}

}  // namespace kova
