// SPDX-License-Identifier: MIT
// Values of the environment that the code page can't tell.
#include <gtest/gtest.h>

#include "core/status.h"
#include "support/engineer.h"

namespace kova::test {
namespace {

const std::string lacks =
    " is not used: its name has characters that this system's code page (Windows-1252) lacks. ";

class Values : public testing::Test {
 protected:
  void define(const std::string& server) {
    form.ExportName.edit(server, server.size());
    form.PropertyName.edit("FIELD", 5);
    form.EditCmd.click();
  }
  std::string status() const { return statusText(engineer.program.wizard); }

  TemporaryFolder home;
  Engineer engineer{home.path()};
  Form1& form = engineer.program.wizard.form;
  std::set<std::string>& unusable = engineer.environment.unusable;
  std::map<std::string, std::string>& values = engineer.environment.values;
};

}  // namespace

TEST_F(Values, TheNextFolderIsTakenAndTheFirstSentenceSaysSo) {
  unusable = {"HOMEDRIVE", "HOME", "FECDB"};
  engineer.start();
  EXPECT_EQ(form.ProjectDir.text(), home.path("")) << "the account's own home";
  EXPECT_EQ(status(), "HOMEDRIVE" + lacks + "HOME" + lacks + "FECDB" + lacks +
                          "Type an export name to define its server or to open its project.");
}

TEST_F(Values, WhatIsNotNeededIsNotMentioned) {
  values = {{"HOMEDRIVE", home.path()}, {"FEC_HOME", home.path("fec")}};
  unusable = {"HOME", "FECDB"};
  engineer.start();
  EXPECT_EQ(status(), "Type an export name to define its server or to open its project.");
}

TEST_F(Values, WithoutAHomeNothingIsWrittenUntilADirectoryIsTyped) {
  engineer.environment.home.clear();
  unusable = {"HOME"};
  engineer.start();
  EXPECT_EQ(status(), "HOME" + lacks + "No home directory is left that Windows-1252 can name: " +
                          "type the project's into Project Directory.");
  define("PUM");
  EXPECT_EQ(form.ProjectDir.text(), "");
  form.Command1.click();
  EXPECT_EQ(engineer.messages.front(),
            "Could not create exports.csv file : no project directory is given");
  EXPECT_FALSE(engineer.ended);
  form.ProjectDir.edit(home.path("PUM"), 0);
  define("PUM");
  form.Command1.click();
  EXPECT_TRUE(engineer.ended);
  EXPECT_EQ(home.names(), std::set<std::string>{"PUM"});
}

TEST_F(Values, NoTableIsCopiedInPlaceOfAnUnusableRepository) {
  values = {{"FECDB", home.path("other")}};
  unusable = {"FEC_HOME"};
  engineer.start();
  define("PUM");
  form.Command1.click();
  EXPECT_TRUE(engineer.messages.empty()) << "no question";
  EXPECT_EQ(status(), "FEC_HOME" + lacks + "The tables are not copied.");
  EXPECT_EQ(home.names(), std::set<std::string>{"PUM"});
}

}  // namespace kova::test
