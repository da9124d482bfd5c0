// SPDX-License-Identifier: MIT
// The property form: commit, add and remove, selection, processes, the three panels.
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "editing/device_panel.h"
#include "editing/field_warnings.h"
#include "editing/range_prefix.h"
#include "support/script.h"

namespace kova::test {
namespace {

const std::string exportHeader =
    "EXPORT_NAME,LOCAL_NAME,PROPERTY,PROPERTY_SIZE,FORMAT,PROPERTY_INSIZE,INFORMAT,PROPERTY_ID,"
    "ACCESS,NUM_MODULES,DESCRIPTION,NUM_STEPS\\r\\n";

const std::string server = R"(
        type ExportName MYSRV; type LocalName MYSRV
)";

/// Rows P0, P1, ... of server S in its directory.
std::string rows(int count) {
  std::string lines = "folder S\nput S/exports.csv " + exportHeader;
  for (int i = 0; i < count; ++i) {
    lines += "S,SEQM,P" + std::to_string(i) + ",1,double,0,NULL,1,READ,1,d,0\\r\\n";
  }
  return lines + "\ntype ExportName S\n";
}

const std::vector<Script> scripts = {
    {"Add confirms, commits and shows the row",
     R"(
        letters ExportName MYSRV; letters PropertyName VOLTAGE
        type PropertyDescription Supply voltage; type Units V; choose OutputDataFormat Single
        type OutputDataSize 10; choose ArrayTypeCombo CHANNEL; answer cancel; click AddProperty
        said Add New Property with these characteristics ?: Adding the following Property information : \r\n\r\n Export Name : MYSRV\r\n Local Name : MYSEQM\r\n Property Name : VOLTAGE\r\n Return Data  : 10 float values (CHANNEL)\r\n Input Data  : none\r\n Property Access : READ\r\n Maximum Value : 100\r\n Minimum Value : 0\r\n Data Units : V\r\n Description : Supply voltage\r\n Keep History: No\r\n Use Alarm Watch : No\r\n Has Device list : No\r\n
        counts 0 0 0; click EditCmd; lines [MYSRV] VOLTAGE <Supply voltage>|
        shows PropertyList 0; shows NumDevices  1; shows Units V; click AddProperty
        said Add New Property with these characteristics ?: Adding the following Property information : \r\n\r\n Export Name : MYSRV\r\n Local Name : MYSEQM\r\n Property Name : VOLTAGE\r\n Return Data  : 10 float values (CHANNEL)\r\n Input Data  : none\r\n Property Access : READ\r\n Maximum Value : 100\r\n Minimum Value : 0\r\n Data Units : V\r\n Description : Supply voltage\r\n Keep History: No\r\n Use Alarm Watch : No\r\n Has Device list : No\r\n
        said Property VOLTAGE already assigned; type PropertyName voltage; type MaxValue
        type MinValue x; choose OutputDataFormat NULL; click EditCmd
        lines [MYSRV] VOLTAGE <Supply voltage>|[MYSRV] voltage <Supply voltage>|
        click Command1
        file MYSRV/exports.csv )" +
         exportHeader +
         R"(MYSRV,MYSEQM,VOLTAGE,10,float.CHANNEL,0,NULL, 1,READ,1,[0:100 V]Supply voltage,0\r\nMYSRV,MYSEQM,voltage,0,NULL.CHANNEL,0,NULL, 2,READ, 1,Supply voltage,0\r\n
        nofile MYSRV/history.csv; nofile MYSRV/devices.csv
        ended)"},
    {"names are checked in order and change nothing", R"(
        click EditCmd; said Not a valid Export Name; type ExportName MAGNET; click EditCmd
        said Not a valid Local Name; type LocalName M; click EditCmd
        said Not a valid Property Name
        counts 0 0 0)"},
    {"history once, alarm watch at each commit", server + R"(
        type PropertyName P; click HistoryCheck; click AlarmWatchCheck; click EditCmd
        click EditCmd; click EditCmd; counts 1 1 3; type LocalName MYSERVER
        said The local equipment module name will be truncated to initial 6 characters : MYSERV
        click EditCmd; click EditCmd; counts 1 3 5; type PollRateText 1; type PropertyName Q
        shows HistoryCheck clear; shows HistoryPanel disabled; type PropertyName P
        shows HistoryCheck clear; select 0; shows HistoryCheck ticked
        shows HistoryPanel enabled
        shows PollRateText 1000)"},
    {"a value that does not fit changes nothing", server + R"(
        type PropertyName P; click AlarmWatchCheck; click HistoryCheck
        type almSeverityText high; click EditCmd
        said Could not add P : Severity (high) is not a valid number
        type PollRateText 99999999999; click EditCmd
        said Could not add P : Polling Rate (msec) is not a valid number
        counts 0 0 0; lines; type PollRateText 5; type almSeverityText 3; click EditCmd
        type PollRateText 99999999999; click EditCmd; counts 1 1 2; type almHiText 1E39
        click EditCmd; said Could not add P : Value too high is not a valid number
        counts 1 1 2)"},
    {"a history table without a free index", rows(1) + R"(
        put S/history.csv Index,Export Name\r\n32767,other\r\n
        click ProjectDir; type ProjectDir {home}/S/; click HistoryCheck; click EditCmd
        said Could not add P0 : the history table has no free index
        counts 1 1 0)"},
    {"a process is five rows",
     server + R"(
        type PropertyName RAMP; type PropertyDescription ramp; click ProcessCheck
        shows NumStepsText 1; usable NumStepsText yes; type NumStepsText; shows NumStepsText 1
        type NumStepsText 1E999; click EditCmd
        said Could not add RAMP : Number Steps : is not a valid number
        type NumStepsText 03; click DeviceListCheck; click EditCmd; counts 5 0 0
        shows PropertyName RAMP.START; shows PropertyDescription Start ramp; shows MaxValue 03
        shows Units; shows DeviceListCheck clear; click EditCmd
        said Please Remove Process Property RAMP.START first; type PropertyName RAMP
        click EditCmd; said Please Remove Process Property RAMP first; click PropertyName
        shows ProcessCheck clear; shows NumStepsText 0; usable NumStepsText no
        lines [MYSRV] RAMP.START <[0:03 ]Start ramp>|[MYSRV] RAMP.STOP <[0:03 ]Stop ramp>|[MYSRV] RAMP.PAUSE <[0:03 ]Pause ramp>|[MYSRV] RAMP.RESUME <[0:03 ]Resume ramp>|[MYSRV] RAMP.STATUS <[0:03 ]Status of ramp>|
        click Command1
        file MYSRV/exports.csv )" +
         exportHeader +
         R"(MYSRV,MYSRV,RAMP.START,1,short,1,short, 1,READ|WRITE,1,[0:03 ]Start ramp,3\r\nMYSRV,MYSRV,RAMP.STOP,0,NULL,0,NULL, 2,WRITE,1,[0:03 ]Stop ramp,3\r\nMYSRV,MYSRV,RAMP.PAUSE,0,NULL,0,NULL, 3,WRITE,1,[0:03 ]Pause ramp,3\r\nMYSRV,MYSRV,RAMP.RESUME,0,NULL,0,NULL, 4,WRITE,1,[0:03 ]Resume ramp,3\r\nMYSRV,MYSRV,RAMP.STATUS,1,short,0,NULL, 5,READ,1,[0:03 ]Status of ramp,3\r\n
        nofile MYSRV/RAMP.START-names.csv)"},
    {"rows shift when one is removed", rows(3) + R"(
        select 0; click RemoveProperty; lines [S] P1 <d>|[S] P2 <d>|; shows PropertyList -1
        click RemoveProperty; select 1; shows PropertyName P2; click PropertyList
        lines [S] P1 <d>|; shows PropertyName P2; click EditCmd; lines [S] P1 <d>|[S] P2 <d>|
        counts 2 0 0
        shows PropertyList 1)"},
    {"a full table turns commits away", rows(1003) + R"(
        counts 1001 0 0; type PropertyName new; click DeviceListCheck; click EditCmd
        said The property table is full; click DeviceListCheck; shows ServerOption selected
        select 1000; shows PropertyName P1000; click RemoveProperty; type PropertyName new
        click ProcessCheck; click EditCmd; said The property table is full; click ProcessCheck
        click EditCmd; counts 1001 0 0
        shows PropertyList 1000)"},
    {"a row that does not fit the lists selects READ",
     R"(
        folder S
        put S/exports.csv )" +
         exportHeader +
         R"(S,SEQM,P,,Double,x,short,1,OTHER,2,[abc]x,0\r\nS,SEQM,Q,5,short.wav,0,NULL,1,WRITE,2,[1:2 m s]y,0\r\nS,SEQM,R,1,short,0,NULL,1,WRITE,none,z,0\r\n
        type ExportName S; counts 2 0 0; shows OutputDataFormat Integer
        shows ArrayTypeCombo WAV; shows Units m s; shows MinValue 1
        choose AccessMode READ|WRITE; select 0; shows AccessMode READ
        shows OutputDataFormat NULL; usable ArrayTypeCombo yes; shows MinValue 1
        shows MaxValue 2; shows Units none; shows PropertyDescription x; shows InputDataSize x
        shows InputDataFormat Integer)"},
    {"the server's device list", R"(
        type NumDevices 3; leave NumDevices
        shows deviceNamesInputText Device 0\r\nDevice 1\r\nDevice 2\r\n
        type deviceNamesInputText A\r\nB\r\nC\r\n
        leave deviceNamesInputText; caret deviceNamesInputText 4; shows deviceNumberInputText  1
        at deviceNamesInputText 3; caret deviceNamesInputText 4; at deviceNamesInputText 4
        type deviceNumberInputText 5; at deviceNamesInputText 9
        type deviceNumberInputText 40000; at deviceNamesInputText 9; type NumDevices 2
        type NumDevices 3; type NumDevices 99999; leave NumDevices
        shows deviceNamesInputText A\r\nB\r\nC\r\n
        type ExportName S; type PropertyName P; click DeviceListCheck; click DeviceListCheck
        shows deviceNamesInputText A\r\nB\r\nDevice 2\r\n
        type NumDevices 3; click EditCmd; click Command1
        file S/devices.csv DEVICE_NUMBER,DEVICE_NAME\r\n 0,A\r\n 1,B\r\n 2,Device 2\r\n)"},
    {"a property's device list waits in the free slot", server + R"(
        type PropertyName P; type OutputDataSize -1; click DeviceListCheck
        shows ServerOption selected; click DeviceListCheck; type OutputDataSize 2
        click DeviceListCheck; shows propertyOption selected
        shows deviceNamesInputText Device 0\r\nDevice 1\r\n
        type deviceNamesInputText X\r\nY\r\n
        leave deviceNamesInputText; click EditCmd; shows DeviceListCheck ticked
        shows deviceNamesInputText X\r\nY\r\n\r\n
        type PropertyName Q; shows DeviceListCheck clear; click EditCmd
        shows DeviceListCheck clear; select 0; click Command1
        file MYSRV/P-names.csv DEVICE_NUMBER,DEVICE_NAME\r\n 0,X\r\n 1,Y\r\n 2,Device 2\r\n
        nofile MYSRV/Q-names.csv)"},
    {"a device list given up does not reach another property", server + R"(
        type PropertyName P; click EditCmd; type PropertyName Q; click DeviceListCheck; select 0
        shows DeviceListCheck clear; type PropertyName R; click EditCmd
        shows DeviceListCheck clear)"},
    {"thresholds and mask exclude each other", R"(
        type almHiText 40; focus almLoText; shows almHiText 40; type almMaskText 3
        focus almNormalText; shows almHiText 0; shows almMaskText 3; focus almHiWarnText
        shows almMaskText 0)"},
};

TEST(Editing, Flows) {
  for (const Script& script : scripts) playFresh(script);
}

TEST(Editing, DescriptionsAreTakenApart) {
  using Text = std::optional<std::string>;
  struct Case {
    std::string description;
    bool hasPrefix;
    Text minimum, maximum;
    std::string units, rest;
  };
  const std::vector<Case> cases = {
      {"[0:100 V]Supply voltage", true, "0", "100", "V", "Supply voltage"},
      {"[-1.5:1.5 mA/cm2]x", true, "-1.5", "1.5", "mA/cm2", "x"},
      {"[0:3 ]Start ramp", true, "0", "3", "", "Start ramp"},
      {"[0:100]x", true, "0", {}, "none", "x"},
      {"[abc]x", true, {}, {}, "none", "x"},
      {"x[0:1 V]y", true, "0", "1", "V]", "y"},
      {"[ab", false, {}, {}, "", "[ab"},
      {"[]x", false, {}, {}, "", "[]x"},
      {"[a]x", false, {}, {}, "", "[a]x"},
      {"]x[0:1 V]", false, {}, {}, "", "]x[0:1 V]"}};
  for (const Case& c : cases) {
    const DescriptionParts parts = takeApart(c.description);
    EXPECT_EQ(parts.hasPrefix, c.hasPrefix) << c.description;
    EXPECT_EQ(parts.minimum, c.minimum) << c.description;
    EXPECT_EQ(parts.maximum, c.maximum) << c.description;
    EXPECT_EQ(parts.units, c.units) << c.description;
    EXPECT_EQ(parts.rest, c.rest) << c.description;
  }
}

TEST(Editing, FieldsThatACommitWouldRefuseAreMarked) {
  const std::vector<std::pair<std::string, bool>> cases = {
      {"type LocalName MAGNETS", true},   {"type LocalName MAGNET", false},
      {"type PollRateText soon", true},   {"type PollRateText 10", false},
      {"type AlmSystemText 40000", true}, {"type almSeverityText", true},
      {"type toleranceText 10%", false},  {"type PropertyDescription a,b", true},
      {"type NumDevices  3", false}};
  const TemporaryFolder home;
  Engineer engineer(home.path());
  engineer.start();
  for (const auto& [act, marked] : cases) {
    ASSERT_EQ(engineer.carryOut(act), "");
    const std::string name = act.substr(5, act.find(' ', 5) - 5);
    EXPECT_EQ(!fieldWarning(engineer.program.wizard, engineer.field(name)).empty(), marked) << act;
  }
}

}  // namespace
}  // namespace kova::test
