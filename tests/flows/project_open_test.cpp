// SPDX-License-Identifier: MIT
// Directories and files that an entry meets where not all is as the wizard would leave it.
#include <cerrno>
#include <cstring>

#include <filesystem>

#include "support/flow.h"

namespace kova::test {
namespace {

struct Entry : Flow {};

const std::string wayOut = ". Click into Project Directory and type ";

TEST_F(Entry, CleansUpAndTellsHowManyOldBackupsItDeleted) {
  home.write("MAGNET/.exports.csv.kova~1", "half a table of a killed wizard");
  home.write("MAGNET/.exports.csv~1", "somebody's own");
  home.write("MAGNET/exports-1600000000.csv", "old");
  home.write("MAGNET/MAGEQM-devices-1600000000.csv", "old");
  home.write("MAGNET/invoice-1600000000.pdf", "no backup");
  home.write("MAGNET/almwatch-160000000.csv", "no backup");
  const std::string made = std::to_string(example.size() + 2) + " backups made";
  EXPECT_NE(entered("MAGNET").find(made + ", 2 old backups deleted."), std::string::npos);
  EXPECT_TRUE(engineer.program.wizard.state.onDisk.backupsUnflushed);
  EXPECT_TRUE(home.has("MAGNET/invoice-1600000000.pdf"));
  EXPECT_FALSE(home.has("MAGNET/.exports.csv.kova~1"));
  EXPECT_TRUE(home.has("MAGNET/.exports.csv~1"));
  EXPECT_NE(entered("MAGNET").find(made + "."), std::string::npos) << status();
}

TEST_F(Entry, TakesNoListOfDeviceNamesThatARowNamesForABackup) {
  const std::string property = "PSU-1200112345.START";
  project("A", {"A,L," + property + ",1,short,0,NULL,1,READ,3,x,0"});
  for (const char* name : {"PSU.START", "PSU-1200112345.START", "PSU-1200112346.START", "V"}) {
    home.write("A/" + std::string(name) + "-names.csv", "DEVICE_NUMBER,DEVICE_NAME\r\n");
  }
  entered("A");
  EXPECT_TRUE(home.has("A/" + property + "-names.csv"));
  EXPECT_TRUE(home.has("A/PSU-1200112345-1700000000.START-names.csv"));
  EXPECT_FALSE(home.has("A/PSU-1200112346.START-names.csv"));
  for (const std::string& nobodyKnows : {std::string(), std::string(40000, 'x')}) {
    home.write("A/exports.csv", nobodyKnows);
    home.write("A/exports-1200112345.csv", "old");
    home.write("A/V-names-1200112345.csv", "old");
    entered("A");
    EXPECT_TRUE(home.has("A/" + property + "-names.csv"));
    EXPECT_TRUE(home.has("A/V-names-1200112345.csv"));
    EXPECT_FALSE(home.has("A/exports-1200112345.csv"));
  }
}

TEST_F(Entry, TellsWhereNoLineEndsInCr) {
  home.write("MAGNET/history.csv", "Index,Export Name\n1,MAGNET\n");
  const std::string message = " Nothing to read: no line of history.csv ends in CR.";
  EXPECT_NE(entered("MAGNET").find(message), std::string::npos) << status();
  EXPECT_TRUE(engineer.program.wizard.state.project.historyInUse);
}

TEST_F(Entry, NamesTheFileWithoutABackupAndLeavesNoCopies) {
  const std::string file(250, 'z');
  const std::string text = "Project not read: backup of " + file + ": " +
                           std::strerror(ENAMETOOLONG) +
                           ". Move the file away, or make sure that it is readable and that the " +
                           "directory is writable and has free space.";
  home.write("MAGNET/" + file, "whose backup no disk can name");
  home.write("MAGNET/exports-1600000000.csv", "old");
  home.write("MAGNET/exports-1700000000.csv", "of the same second");
  EXPECT_EQ(entered("MAGNET"), text + " 1 old backup deleted.");
  EXPECT_EQ(entered("MAGNET"), text);
  using Folder = std::filesystem::directory_iterator;
  EXPECT_EQ(static_cast<std::size_t>(std::distance(Folder(home.path("MAGNET")), Folder())),
            example.size() + 2);
}

TEST_F(Entry, RowsLeadOnlyToPlainNamesInTheHomeDrive) {
  const std::string out = "../" + Path{home.path()}.leaf() + "/MAGNET";
  for (const std::string& name : {std::string("deep/archive"), out, std::string("MAGNET/")}) {
    std::filesystem::create_directories(home.path("deep/archive"));
    project("A", {name + ",L,P,1,short,0,NULL,1,READ,3,x,0"});
    open("");
    open("A");
    const std::string message = " Project " + name + " not read: the last row belongs to " + name +
                                ", which is not a directory in " + home.path();
    EXPECT_TRUE(status().ends_with(message + wayOut + home.path("A."))) << status();
    EXPECT_EQ(engineer.rows().properties, 0);
    EXPECT_FALSE(home.has("MAGNET/exports-1700000000.csv"));
  }
  project("deep/archive", {"deep/archive,L,P,1,short,0,NULL,1,READ,3,x,0"});
  EXPECT_TRUE(entered("deep/archive").starts_with("Project read: 1 property")) << "typed";
}

TEST_F(Entry, AChainOfProjectsEndsWithAWord) {
  for (int link = 0; link < 17; ++link) {
    project("P" + std::to_string(link),
            {"P" + std::to_string(link + 1) + ",L,P,1,short,0,NULL,1,READ,3,x,0"});
  }
  open("P0");
  EXPECT_EQ(form.ProjectDir.text(), home.path("P16"));
  const std::string message =
      " Project P16 not read: too many projects lead to each other through their last rows";
  EXPECT_TRUE(status().ends_with(message + wayOut + home.path("P0."))) << status();
  open("MAGNET");
  EXPECT_TRUE(status().starts_with("Project read: 8 properties")) << status();
  EXPECT_EQ(status().find("not read"), std::string::npos) << "that is over";
}

}  // namespace
}  // namespace kova::test
