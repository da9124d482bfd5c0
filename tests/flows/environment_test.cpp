// SPDX-License-Identifier: MIT
// Values of the environment that the code page can't tell.
#include "support/flow.h"

namespace kova::test {
namespace {

const std::string lacks =
    " is not used: its value has characters that this system's code page (Windows-1252) lacks. ";

struct Values : Flow {
  void SetUp() override {}  // the environment is to be set ahead of the start
  void startWithout(const std::set<std::string>& names) {
    engineer.environment.unusable = names;
    engineer.start();
  }
  void define() {
    open("PUM");
    commit("FIELD");
    form.Command1.click();
  }
  const std::string first = "Type an export name to define its server or to open its project.";
};

TEST_F(Values, TheNextFolderIsTakenAndTheFirstSentenceSaysSo) {
  startWithout({"HOMEDRIVE", "HOME", "FECDB"});
  EXPECT_EQ(form.ProjectDir.text(), home.path("")) << "the account's own home";
  EXPECT_EQ(status(), "HOMEDRIVE" + lacks + "HOME" + lacks + "FECDB" + lacks + first);
}

TEST_F(Values, WhatIsNotNeededIsNotMentioned) {
  engineer.environment.values = {{"HOMEDRIVE", home.path()}, {"FEC_HOME", home.path("fec")}};
  startWithout({"HOME", "FECDB"});
  EXPECT_EQ(status(), first);
}

TEST_F(Values, WithoutAHomeNothingIsWrittenUntilADirectoryIsTyped) {
  engineer.environment.home.clear();
  startWithout({"HOME"});
  EXPECT_EQ(status(), "HOME" + lacks + "No home directory can be named in Windows-1252. " +
                          "Type the project directory into Project Directory.");
  define();
  EXPECT_EQ(said(), "Could not create exports.csv file : no project directory is given");
  type(form.ProjectDir, home.path("PUM"));
  define();
  EXPECT_TRUE(home.has("PUM/exports.csv"));
}

TEST_F(Values, NoTableIsCopiedInPlaceOfAnUnusableRepository) {
  engineer.environment.values = {{"FECDB", home.path("other")}};
  startWithout({"FEC_HOME"});
  define();
  EXPECT_EQ(status(), "All tables written. FEC_HOME" + lacks + "The tables are not copied.");
}

}  // namespace
}  // namespace kova::test
