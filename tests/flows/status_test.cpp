// SPDX-License-Identifier: MIT
// The status line: what it counts as not yet on disk.
#include "core/status.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "support/engineer.h"

namespace kova::test {
namespace {

const std::string header =
    "EXPORT_NAME,LOCAL_NAME,PROPERTY,PROPERTY_SIZE,FORMAT,PROPERTY_INSIZE,INFORMAT,PROPERTY_ID,"
    "ACCESS,NUM_MODULES,DESCRIPTION,NUM_STEPS\r\n";

/// Rights stop at other people's files only for an account that is not root's.
struct AnotherAccount {
  AnotherAccount() : taken(::geteuid() == 0 && ::seteuid(65534) == 0) {}
  AnotherAccount(const AnotherAccount&) = delete;
  AnotherAccount& operator=(const AnotherAccount&) = delete;
  AnotherAccount(AnotherAccount&&) = delete;
  AnotherAccount& operator=(AnotherAccount&&) = delete;
  ~AnotherAccount() {
    if (taken && ::seteuid(0) != 0) std::abort();
  }
  const bool taken;
};

/// A wizard in whose home lies the project MAGNET: three properties, three devices with names.
class Status : public testing::Test {
 protected:
  Status() {
    std::filesystem::create_directory(home.path("MAGNET"));
    home.write("MAGNET/exports.csv",
               header +
                   "MAGNET,MAGEQM,FIELD,2,float,0,NULL,1,READ,3,[0:2 T]Field,0\r\n"
                   "MAGNET,MAGEQM,STATE,1,short,0,NULL,2,READ,3,[0:9 V]State,0\r\n"
                   "MAGNET,MAGEQM,SET,1,double,1,double,3,READ|WRITE,3,[0:2 T]Set point,0\r\n");
    home.write("MAGNET/MAGEQM-devices.csv",
               "DEVICE_NUMBER,DEVICE_NAME\r\n0,Quad\r\n1,Sext\r\n2,Dipole\r\n");
    wizard.statusLine.mirror = [this] { shown = statusText(wizard); };
    engineer.start();
    form.vbProject.setValue(0);
  }

  static void type(TextField& field, const std::string& text) { field.edit(text, text.size()); }
  void nameDevices(const std::string& lines) {
    type(form.deviceNamesInputText, lines);
    form.deviceNamesInputText.lostFocus();
  }
  /// A property with a history, an alarm watch and two devices of its own, on a server of two.
  void defineServer() {
    type(form.ExportName, "PUMPS");
    type(form.LocalName, "PUMEQM");
    type(form.NumDevices, "2");
    form.NumDevices.lostFocus();
    nameDevices("North\r\nSouth");
    type(form.PropertyName, "P");
    type(form.OutputDataSize, "1");
    form.HistoryCheck.setValue(1);
    form.AlarmWatchCheck.setValue(1);
    form.DeviceListCheck.setValue(1);
    form.EditCmd.click();
  }
  std::set<std::string> namesIn(const std::string& folder) const {
    std::set<std::string> all;
    for (const auto& entry : std::filesystem::directory_iterator(home.path(folder))) {
      all.insert(entry.path().filename().native());
    }
    return all;
  }
  void select(std::int32_t row) { form.PropertyList.select(row); }
  void remove(std::int32_t row) {
    select(row);
    form.RemoveProperty.click();
  }
  std::string unwritten() { return statusText(wizard).substr(wizard.statusLine.sentence.size()); }

  TemporaryFolder home;
  Engineer engineer{home.path()};
  Wizard& wizard = engineer.program.wizard;
  Form1& form = wizard.form;
  std::string shown;
};

TEST_F(Status, RowsOfAllTablesCount) {
  defineServer();
  EXPECT_EQ(shown,
            "Property P added. 1 property, 1 history row, 1 alarm watch row, 4 device names not "
            "yet written.");

  form.EditCmd.click();
  form.EditCmd.click();
  EXPECT_EQ(shown,
            "Property P replaced. 1 property, 1 history row, 3 alarm watch rows, 4 device names "
            "not yet written.");
}

TEST_F(Status, NamesThatDoneWouldNotWriteDoNotCount) {
  type(form.ExportName, "PUMPS");
  type(form.LocalName, "PUMEQM");
  type(form.PropertyName, "P");
  form.EditCmd.click();
  EXPECT_EQ(shown, "Property P added. 1 property not yet written.");
}

TEST_F(Status, AProjectThatWasReadCountsWhereItDiffers) {
  type(form.ExportName, "MAGNET");
  EXPECT_EQ(shown,
            "Project read: 3 properties, 0 history rows, 0 alarm watch rows, 3 device names; 2 "
            "backups made.");

  for (const std::int32_t row : {0, 1, 2}) {
    select(row);
    form.EditCmd.click();
  }
  EXPECT_EQ(shown, "Property SET replaced.");

  type(form.PropertyDescription, "Wanted");
  form.EditCmd.click();
  EXPECT_EQ(shown, "Property SET replaced. 1 property not yet written.");

  type(form.PropertyDescription, "Set point");
  form.EditCmd.click();
  EXPECT_EQ(shown, "Property SET replaced.");
}

TEST_F(Status, RemovalsCountUnlessTheDiskNeverHeldTheRow) {
  type(form.ExportName, "MAGNET");
  remove(0);
  EXPECT_EQ(shown, "Property FIELD removed. 1 removal not yet written.");
  remove(0);
  EXPECT_EQ(shown, "Property STATE removed. 2 removals not yet written.");

  form.EditCmd.click();
  EXPECT_EQ(shown, "Property STATE added. 1 property, 2 removals not yet written.");
  remove(1);
  EXPECT_EQ(shown, "Property STATE removed. 2 removals not yet written.");
}

TEST_F(Status, RowsAreKnownByBothNames) {
  home.write("MAGNET/exports.csv", header +
                                       "ONE,MAGEQM,P,1,short,0,NULL,1,READ,3,[0:9 V]a,0\r\n"
                                       "TWO,MAGEQM,P,1,short,0,NULL,2,READ,3,[0:9 V]b,0\r\n");
  type(form.ExportName, "MAG");
  type(form.ExportName, "MAGNET");
  remove(0);
  EXPECT_EQ(shown, "Property P removed. 1 removal not yet written.");
}

TEST_F(Status, TheNumberOfDevicesStandsInEachRow) {
  type(form.ExportName, "MAGNET");
  type(form.NumDevices, "2");
  EXPECT_EQ(unwritten(), " 3 properties, 1 removal not yet written.") << "the name of the third";

  type(form.NumDevices, "3");
  EXPECT_EQ(unwritten(), " 1 device name not yet written.") << "it does not come back";
}

TEST_F(Status, DeviceNamesCountOneByOne) {
  type(form.ExportName, "MAGNET");
  nameDevices("Quad\r\nSextupole\r\nDipole\r\n");
  EXPECT_EQ(unwritten(), " 1 device name not yet written.");

  home.write("MAGNET/FIELD-names.csv", "DEVICE_NUMBER,DEVICE_NAME\r\n0,Left\r\n1,Right\r\n");
  select(0);
  EXPECT_EQ(unwritten(), " 1 device name not yet written.") << "those of FIELD are on disk";
  type(form.deviceNamesInputText, "Left\r\nTop\r\n\r\n");
  form.EditCmd.click();
  EXPECT_EQ(unwritten(), " 2 device names not yet written.");

  form.DeviceListCheck.setValue(0);
  EXPECT_EQ(unwritten(), " 1 device name not yet written.") << "a list that was given up";
}

TEST_F(Status, ADoneThatFailsHalfwayLeavesOnlyWhatItHasNotWritten) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"history.csv", "1 history row, 1 alarm watch row, 4 device names"},
      {"almwatch.csv", "1 alarm watch row, 4 device names"},
      {"devices.csv", "4 device names"},
      {"P-names.csv", "2 device names"}};
  defineServer();
  for (const auto& [table, left] : cases) {
    std::filesystem::create_directories(home.path("PUMPS/" + table));
    form.Command1.click();
    EXPECT_EQ(shown, "The project is not finished. " + left + " not yet written.");
    EXPECT_EQ(engineer.messages.back(), "Could not write " + table + " : Is a directory");
    std::filesystem::remove(home.path("PUMPS/" + table));
  }

  form.AlarmWatchCheck.setValue(0);
  type(form.Units, "mbar");
  form.EditCmd.click();
  EXPECT_EQ(shown, "Property P replaced. 1 property, 2 device names not yet written.");
  form.Command1.click();
  EXPECT_TRUE(engineer.ended);
  EXPECT_EQ(unwritten(), "");
}

TEST_F(Status, EachDoneTellsOnceWhatSomebodyElseHasWritten) {
  type(form.ExportName, "MAGNET");
  home.write("MAGNET/exports.csv", "by a colleague");
  std::filesystem::create_directory(home.path("MAGNET/devices.csv"));
  form.Command1.click();
  EXPECT_EQ(shown,
            "The project is not finished. What somebody else has written to exports.csv since is "
            "kept as exports-1700000000.csv. 1 device name not yet written.")
      << "Done has named the device without a name";
  form.Command1.click();
  EXPECT_EQ(shown, "The project is not finished. 1 device name not yet written.");

  home.write("MAGNET/exports.csv", "by another");
  std::filesystem::remove(home.path("MAGNET/devices.csv"));
  form.Command1.click();
  EXPECT_TRUE(engineer.ended);
  EXPECT_EQ(statusText(wizard),
            "What somebody else has written to exports.csv since is kept as "
            "exports-1700000000.csv.");
}

TEST_F(Status, AnEntryTellsWhatItDroppedAndWhatItCouldNotRead) {
  std::filesystem::copy(home.path("MAGNET"), home.path("MAGNETS"));
  std::filesystem::create_directory(home.path("MAGNETS/history.csv"));
  home.write("MAGNETS/almwatch.csv", "property,size\r\nFIELD,99999999999\r\n");
  type(form.ExportName, "MAGNET");
  type(form.ExportName, "MAGNETS");
  EXPECT_EQ(shown,
            "3 rows dropped by the change of directory. Project read: 3 properties, 0 history "
            "rows, 0 alarm watch rows, 3 device names; 3 backups made. history.csv can't be read: "
            "Is a directory. Reading almwatch.csv stopped at line 2: 99999999999 is outside "
            "-2147483648 to 2147483647.");
}

TEST_F(Status, AnEntryTellsWhatItDeletedAndWhereNoLineEnds) {
  home.write("MAGNET/exports-1600000000.csv", "old");
  home.write("MAGNET/MAGEQM-devices-1600000000.csv", "old");
  home.write("MAGNET/invoice-1600000000.pdf", "no backup");
  home.write("MAGNET/history.csv", "Index,Export Name\n1,MAGNET\n");
  type(form.ExportName, "MAGNET");
  EXPECT_EQ(shown,
            "Project read: 3 properties, 0 history rows, 0 alarm watch rows, 3 device names; 4 "
            "backups made, 2 old backups deleted. Nothing to read: no line of history.csv ends in "
            "CR.");
  EXPECT_TRUE(wizard.state.historyInUse);
  EXPECT_TRUE(wizard.state.onDisk.backupsUnflushed);
}

TEST_F(Status, AFileThatCantBeBackedUpIsNamedAndLeavesNoCopies) {
  const std::string file(250, 'z');
  const std::string text = "Project not read: backup of " + file + ": File name too long. Move " +
                           "the file away, or see that the directory is writable and has room.";
  home.write("MAGNET/" + file, "whose backup no disk can name");
  home.write("MAGNET/exports-1600000000.csv", "old");
  home.write("MAGNET/exports-1700000000.csv", "of the same second");
  type(form.ExportName, "MAGNET");
  EXPECT_EQ(shown, text + " 1 old backup deleted.");
  const std::set<std::string> left{"exports.csv", "MAGEQM-devices.csv", file,
                                   "exports-1700000000.csv"};
  EXPECT_EQ(namesIn("MAGNET"), left);
  EXPECT_EQ(home.read("MAGNET/exports-1700000000.csv"), home.read("MAGNET/exports.csv"));
  type(form.ExportName, "MAGNE");
  type(form.ExportName, "MAGNET");
  EXPECT_EQ(shown, text);
  EXPECT_EQ(namesIn("MAGNET"), left);
}

TEST_F(Status, FilesOfOthersAreNamedWithWhatToDo) {
  home.write("MAGNET/private", "of a colleague");
  std::filesystem::permissions(home.path("MAGNET/private"), std::filesystem::perms::none);
  std::filesystem::permissions(home.path("MAGNET"), std::filesystem::perms(01777));
  std::filesystem::permissions(home.path(), std::filesystem::perms(0755));
  {
    const AnotherAccount account;
    type(form.ExportName, "MAGNET");
    EXPECT_EQ(shown,
              "Project not read: backup of private: Permission denied. Move the file away or make "
              "it readable.");
    if (!account.taken) return;
  }
  home.write("MAGNET/exports-1600000000.csv", "of a colleague");
  const AnotherAccount account;
  type(form.ExportName, "MAGNE");
  type(form.ExportName, "MAGNET");
  EXPECT_EQ(shown,
            "Project not read: old backup exports-1600000000.csv: Operation not permitted. Delete "
            "the file or ask its owner to.");
}

TEST_F(Status, AChainOfProjectsEndsWithAWord) {
  for (int link = 0; link < 17; ++link) {
    const std::string name = "P" + std::to_string(link);
    std::filesystem::create_directory(home.path(name));
    home.write(name + "/exports.csv",
               header + "P" + std::to_string(link + 1) + ",L,P,1,short,0,NULL,1,READ,3,x,0\r\n");
  }
  type(form.ExportName, "P0");
  EXPECT_EQ(wizard.state.projectPath, home.path("P16"));
  EXPECT_EQ(shown.substr(shown.find(" Project P16")),
            " Project P16 not read: too many projects lead to one another by the export names of "
            "their last rows. Click into Project Directory and type the wanted directory.");
  type(form.ExportName, "MAGNET");
  EXPECT_EQ(shown.find("not read"), std::string::npos) << shown;
}

TEST_F(Status, TheRootCanBeAProject) {
  const auto enterRoot = [&] {
    // As another account this takes a name space of its own.
    if (::geteuid() != 0 && ::unshare(CLONE_NEWUSER) != 0) ::_exit(2);
    if (::chroot(home.path("MAGNET").c_str()) != 0 || ::chdir("/") != 0) ::_exit(3);
    form.ProjectDir.click();
    type(form.ProjectDir, "/");
    ::_exit(wizard.state.exportCount == 3 && wizard.state.alarmCount == 0 ? 0 : 1);
  };
  EXPECT_EXIT(enterRoot(), testing::ExitedWithCode(0), "");
  EXPECT_EQ(namesIn("MAGNET").size(), 4U);
}

TEST_F(Status, ADirectoryThatIsLeftCountsNoMore) {
  type(form.ExportName, "MAGNET");
  remove(0);
  type(form.ExportName, "MAGNETS");
  EXPECT_EQ(shown, "2 rows dropped by the change of directory. 4 device names not yet written.")
      << "the names go along to the next server";

  type(form.ExportName, "MAGNET");
  EXPECT_EQ(unwritten(), "");
}

}  // namespace
}  // namespace kova::test
