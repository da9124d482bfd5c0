// SPDX-License-Identifier: MIT
// Start-up, names, entering a project, Done, the guided dialog.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/script.h"

namespace kova::test {
namespace {

const std::string exportHeader =
    "EXPORT_NAME,LOCAL_NAME,PROPERTY,PROPERTY_SIZE,FORMAT,PROPERTY_INSIZE,INFORMAT,PROPERTY_ID,"
    "ACCESS,NUM_MODULES,DESCRIPTION,NUM_STEPS\\r\\n";
const std::string historyHeader =
    "Index,Export Name,Local Name,Property,Device,Data Length,Format,Heartbeat,Polling Rate,"
    "Archive Rate,Tolerance,Short Depth,Long Depth\\r\\n";
const std::string alarmHeader =
    "LocalName,DeviceName,property,size,Format,severity,alarmSystem,HIGH,LOW,HIGHWARN,LOWWARN,"
    "MASK,NORMAL\\r\\n";
const std::string fieldRow =
    "MAGNET,MAGEQM,FIELD,10,float.CHANNEL,0,NULL, 1,READ,3,[0:2 T]Field,0\\r\\n";
const std::string fieldHistory =
    " 4,MAGNET,MAGEQM,FIELD,#0, 10,FLOAT, 18000, 500, 30,0.5, 100, 6\\r\\n";
const std::string setAlarm = "MAGEQM,#0,SET, 1,FLOAT, 10, 7, 40.5,-3, .25, 0,0,0\\r\\n";

const std::string magnet =
    "folder MAGNET\nput MAGNET/exports.csv " + exportHeader + fieldRow +
    "MAGNET,MAGEQM,SET,1,double,1,double, 2,READ|WRITE,3,Set point,0\\r\\n\n" +
    "put MAGNET/history.csv " + historyHeader + fieldHistory + "\nput MAGNET/almwatch.csv " +
    alarmHeader + setAlarm +
    "\nput MAGNET/MAGEQM-devices.csv DEVICE_NUMBER,DEVICE_NAME\\r\\n 0,Quad\\r\\n 2,Sext\\r\\n\n";

/// Two servers whose only rows name each other.
const std::string twins =
    "folder A\nput A/exports.csv " + exportHeader +
    "B,BEQM,P,1,double,0,NULL, 1,READ,1,x,0\\r\\n\nfolder B\nput B/exports.csv " + exportHeader +
    "A,AEQM,P,1,double,0,NULL, 1,READ,1,x,0\\r\\n\n";

const std::string question =
    "said Write to FEC_HOME repository?: Do you want to update the database files under "
    "{home}/fec/MAGEQM/ ?\n";

const std::vector<Script> scripts = {
    {"start-up", R"(
        shows ProjectDir {home}/; shows LocalName; shows NumDevices 1; shows MaxValue 100
        shows MinValue 0; shows Units none; shows InputDataFormat NULL
        shows OutputDataFormat Double; shows InputDataSize 0; shows OutputDataSize 1
        usable ArrayTypeCombo no; usable NumStepsText no; shows vbProject ticked
        shows cProject clear; shows HistoryPanel enabled; shows deviceNamesInputText Device 0
        shows ServerOption selected; lines; menu property
        said Property Information guidance is coming soon to a theater near you!
        counts 0 0 0)"},
    {"a project loads at the keystroke that completes its name", magnet + R"(
        letters ExportName MAG; shows LocalName MAGEQM; shows ProjectDir {home}/MAG; lines
        letters ExportName NET; shows LocalName MAGEQM
        lines [MAGNET] FIELD <[0:2 T]Field>|[MAGNET] SET <Set point>|
        counts 2 1 1; shows PropertyList 1; shows PropertyName SET; shows NumDevices  3
        shows HistoryCheck clear; shows AlarmWatchCheck clear
        file MAGNET/MAGEQM-devices-1700000000.csv DEVICE_NUMBER,DEVICE_NAME\r\n 0,Quad\r\n 2,Sext\r\n
        select 0; shows HistoryCheck ticked; shows PollRateText 500; shows toleranceText 0.5
        shows ArchiveHeartbeatText 18000; shows MaxValue 2; shows Units T
        shows ArrayTypeCombo CHANNEL
        shows deviceNamesInputText Quad\r\n\r\nSext\r\n\r\n
        select 1; shows AlarmWatchCheck ticked; shows almHiText 40.5; shows almHiWarnText 0.25
        shows almCountThreshText 0; shows Units T; letters ExportName S; lines; counts 0 0 0
        shows LocalName MAGEQM
        nofile MAGNETS)"},
    {"Done writes, copies, starts the generators and ends",
     magnet + R"(
        folder fec; setenv FECDB {home}/fec; type ExportName MAGNET; shows LocalName MAGEQM
        click cProject; answer yes; click Command1
        )" +
         question + "file MAGNET/exports.csv " + exportHeader + fieldRow +
         R"(MAGNET,MAGEQM,SET,1,double,1,double, 2,READ|WRITE,3,Set point,0\r\n
        file MAGNET/history.csv )" +
         historyHeader + fieldHistory +
         R"( 5,MAGNET,MAGEQM,SET,#0, 1,double, 18000, 1000, 10,10%, 600, 1\r\n
        file MAGNET/almwatch.csv )" +
         alarmHeader + setAlarm + R"(
        file MAGNET/devices.csv DEVICE_NUMBER,DEVICE_NAME\r\n 0,Quad\r\n 1,Device 1\r\n 2,Sext\r\n 3,Device 3\r\n
        file fec/MAGEQM/almwatch.csv )" +
         alarmHeader + setAlarm + R"(
        file fec/MAGEQM/devices.csv DEVICE_NUMBER,DEVICE_NAME\r\n 0,Quad\r\n 1,Device 1\r\n 2,Sext\r\n 3,Device 3\r\n
        started vbskelgen.exe {home}/MAGNET|cskelgen.exe {home}/MAGNET LINUX|
        ended)"},
    {"No leaves the repository alone; FEC_HOME counts first", magnet + R"(
        setenv FECDB {home}/other; setenv FEC_HOME {home}/fec/; type ExportName MAGNET
        click vbProject; click Command1
        )" + question + R"(
        nofile fec; started
        ended)"},
    {"a repository that can't be reached costs a message a file", magnet + R"(
        setenv FEC_HOME {home}/fec; type ExportName MAGNET; answer yes; click Command1
        )" + question + R"(
        said Couldn't copy {home}/MAGNET/exports.csv to {home}/fec/MAGEQM/ : No such file or directory
        said Couldn't copy {home}/MAGNET/history.csv to {home}/fec/MAGEQM/ : No such file or directory
        said Couldn't copy {home}/MAGNET/almwatch.csv to {home}/fec/MAGEQM/ : No such file or directory
        said Couldn't copy {home}/MAGNET/devices.csv to {home}/fec/MAGEQM/ : No such file or directory
        ended)"},
    {"a local name that leads out of the repository copies nothing", R"(
        folder fec/MAGEQM; folder E; setenv FEC_HOME {home}/fec/MAGEQM
        put E/exports.csv )" + exportHeader + R"(E,../../x,P,1,double,0,NULL, 1,READ,1,x,0\r\n
        type ExportName E
        said The local equipment module name will be truncated to initial 6 characters : ../../
        answer yes; click Command1
        said Write to FEC_HOME repository?: Do you want to update the database files under {home}/fec/MAGEQM/../../x/ ?
        said Couldn't copy {home}/E/exports.csv to {home}/fec/MAGEQM/../../x/ : the local name names no folder of its own
        nofile x
        ended)"},
    {"an empty project: Enter stays, OK ends without a trace", R"(
        letters ExportName NEW; click Command1
        said Server Setup Wizard: You have not added any properties to your project !\r\nDo you want to exit the Server Setup Wizard ?
        shows ExportName NEW; answer ok; click Command1
        said Server Setup Wizard: You have not added any properties to your project !\r\nDo you want to exit the Server Setup Wizard ?
        ended; nofile NEW
        started)"},
    {"the directory is made from the top down; no name, no file",
     magnet + R"(
        type ExportName MAGNET; click ProjectDir; type ExportName OTHER; counts 2 1 1
        click AddProperty
        said Add New Property with these characteristics ?: Adding the following Property information : \r\n\r\n Export Name : OTHER\r\n Local Name : MAGEQM\r\n Property Name : SET\r\n Return Data  : 1 double values\r\n Input Data  : 1 double values\r\n Property Access : READ|WRITE\r\n Maximum Value : 100\r\n Minimum Value : 0\r\n Data Units : none\r\n Description : Set point\r\n Keep History: No\r\n Use Alarm Watch : No\r\n Has Device list : No\r\n
        counts 3 1 1; type ProjectDir {home}/a/b/; lines; letters PropertyName X; click EditCmd
        click Command1
        file a/b/exports.csv )" +
         exportHeader +
         R"(OTHER,MAGEQM,SETX,1,double,1,double, 1,READ|WRITE, 3,[0:100 ]Set point,0\r\n
        ended)"},
    {"putHeader's failures keep everything", magnet + R"(
        type ExportName MAGNET; select 1; click ProjectDir; type ProjectDir nowhere
        click EditCmd; click Command1
        said Could not create exports.csv file : there is no folder nowhere to begin with
        type ProjectDir; click EditCmd; click Command1
        said Could not create exports.csv file : no project directory is given
        folder D/exports.csv; type ProjectDir {home}/D; click EditCmd; click Command1
        said Could not create exports.csv file : Is a directory; started
        counts 1 0 1)"},
    {"a table that can't be written ends the sequence", magnet + R"(
        type ExportName MAGNET; click ProjectDir; type ArchiveRateText often
        type PropertyName a/b; click DeviceListCheck; click EditCmd; click Command1
        said Could not write history.csv : Archive Rate: "often" is not a number
        file MAGNET/history.csv )" + historyHeader + fieldHistory +
                                                            R"(
        started; type ArchiveRateText 10; click Command1
        said Could not write a/b-names.csv : The name holds a "/"
        started)"},
    {"what a colleague wrote since entry is kept", magnet + R"(
        type ExportName MAGNET; put MAGNET/almwatch.csv by a colleague; time 1700000100
        put MAGNET/history.csv by another; type ArchiveRateText often; click Command1
        said Could not write history.csv : Archive Rate: "often" is not a number
        status The project is not finished. What somebody else has written to history.csv since is kept as history-1700000100.csv.
        file MAGNET/history.csv by another; file MAGNET/history-1700000100.csv by another
        type ArchiveRateText 10; click Command1
        file MAGNET/almwatch-1700000100.csv by a colleague
        nofile MAGNET/exports-1700000100.csv
        file MAGNET/almwatch.csv )" + alarmHeader + setAlarm +
                                                       R"(
        ended)"},
    {"servers that name each other end silently", twins + R"(
        type ExportName A; shows ExportName A; shows ProjectDir {home}/A
        status 1 row dropped by the change of directory. Project read: 0 properties, 0 history rows, 0 alarm watch rows, 0 device names\x3b 1 backup made.
        lines)"},
    {"rows lead only to directories that lie directly in the home drive",
     "folder deep/archive\nput deep/archive/exports.csv " + exportHeader +
         "deep/archive,AEQM,P,1,double,0,NULL, 1,READ,1,x,0\\r\\n\nfolder A\nput A/exports.csv " +
         exportHeader + R"(deep/archive,BEQM,P,1,double,0,NULL, 1,READ,1,x,0\r\n
        type ExportName A; shows ExportName deep/archive; lines; counts 0 0 0
        status 1 row dropped by the change of directory. Project read: 0 properties, 0 history rows, 0 alarm watch rows, 0 device names\x3b 1 backup made. Project deep/archive not read: this export name of the last row is no plain name of a directory in {home}. Click into Project Directory and type the wanted directory.
        nofile deep/archive/exports-1700000000.csv
        click ProjectDir; type ProjectDir {home}/deep; type ProjectDir {home}/deep/archive
        lines [deep/archive] P <x>|
        status Project read: 1 property, 0 history rows, 0 alarm watch rows, 0 device names\x3b 1 backup made.)"},
    {"clicked fields keep what they hold", R"(
        letters ExportName QVXMA; shows LocalName MAEQM; shows ProjectDir {home}/QVXMA
        click LocalName; letters ExportName G; shows LocalName MAEQM
        shows ProjectDir {home}/QVXMAG; click ProjectDir; letters ExportName N
        shows ProjectDir {home}/QVXMAG; type LocalName MAGNETS
        said The local equipment module name will be truncated to initial 6 characters : MAGNET
        type LocalName MAGNET)"},
    {"the guided dialog by Enter", R"(
        menu server
        shows helperLabel Please Enter the Export Name under which you would like your device server to be known:\x20
        shows lastParam disabled; type ParamText MAGNET; enter ParamText; shows ParamText MAGEQM
        at ParamText 6; shows lastParam; type ParamText MYEQM; enter ParamText
        shows ParamText 1; shows nextParam disabled; click lastParam; shows ParamText MYEQM
        click lastParam; shows ParamText MAGNET; at ParamText 6; click nextParam
        shows ParamText MAGEQM; click nextParam; type ParamText 4; enter ParamText
        shows ExportName MAGNET; shows LocalName MAGEQM; shows NumDevices 4
        shows ProjectDir {home}/MAGNET)"},
    {"the guided dialog keeps its values; Done on step 0 writes them all", R"(
        menu server; type ParamText AB; click DoneParam; shows ExportName AB; shows LocalName
        shows NumDevices; menu server; type ParamText AB; click nextParam; close
        shows NumDevices; menu server; shows ParamText; click nextParam; shows ParamText EQM
        click DoneParam; shows ExportName
        shows LocalName EQM)"},
};

TEST(Project, Flows) {
  for (const Script& script : scripts) playFresh(script);
}

TEST(Project, LocalNames) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"M", "MEQM"},        {"MAG", "MAGEQM"},  {"MAGNET", "MAGEQM"}, {"QVX", ""},
      {"QVXMAG", "MAGEQM"}, {"QV", "QVEQM"},    {"GR.VAC", "VACEQM"}, {"-.AB", ".ABEQM"},
      {"M6-X", "XEQM"},     {"gr.V", "gr.EQM"}, {"ZA", ""},           {"QVXGR", "GREQM"}};
  for (const auto& [typed, derived] : cases) {
    const TemporaryFolder home;
    Engineer engineer(home.path());
    engineer.start();
    EXPECT_EQ(engineer.carryOut("letters ExportName " + typed), "");
    EXPECT_EQ(engineer.shown("LocalName"), derived) << typed;
  }
}

}  // namespace
}  // namespace kova::test
