// SPDX-License-Identifier: MIT
// A whole run of the wizard with one of its calls to the system failing.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <regex>

#include "reliability/system_calls.h"
#include "support/engineer.h"

namespace kova::test {

using Contents = std::map<std::string, std::string>;
using Texts = std::vector<std::string>;

/// Where a hidden name begins in a path.
inline const std::string hidden = std::string(1, pathSeparator) + '.';

/// The wizard on a copy of the example project, with an old backup and an empty repository.
struct Project {
  Project() {
    std::filesystem::copy(KOVA_EXAMPLE, home.path("MAGNET"));
    std::filesystem::create_directory(home.path("fec"));
    home.write("MAGNET/exports-1600000000.csv", "long past");
    former = tables();
    start();
  }

  void start() {
    wizard = std::make_unique<Engineer>(home.path());
    wizard->environment.values["FEC_HOME"] = home.path("fec");
    wizard->start();
    form().cProject.setValue(1);
  }

  void enter() const {
    wizard->clock.now = 1700000100;
    form().ProjectDir.click();
    form().ProjectDir.edit(home.path("MAGNET"), 0);
  }

  void edit() const {
    form().PropertyList.select(6);
    form().PropertyDescription.edit("Field at the four probes", 0);
    form().EditCmd.click();
  }

  /// Done, with copies to the repository.
  void finish() const {
    wizard->clock.now = 1700000200;
    wizard->answers.push_back(Answer::yes);
    form().Command1.click();
  }

  /// Those that are no backups, and what is left under hidden names.
  Contents tables() const {
    Contents all = files();
    std::erase_if(all, [](const auto& file) { return file.first.find("-1") < file.first.size(); });
    return all;
  }

  Contents files() const {
    Contents all;
    for (const auto& file : std::filesystem::recursive_directory_iterator(home.path())) {
      const std::string name = nativeName(file.path().lexically_relative(home.path()));
      if (file.is_regular_file()) all[name] = home.read(name);
    }
    return all;
  }

  /// What holds at any moment: a table is the former or the new one, and what a former one held
  /// lies in it or in a backup. True if something is left under a hidden name.
  bool expectWholeTables(const Contents& finished) const {
    bool isLeft = false;
    std::set<std::string> contents;
    for (const auto& [name, bytes] : files()) contents.insert(bytes);
    for (const auto& [name, bytes] : former) EXPECT_TRUE(contents.contains(bytes)) << name;
    for (const auto& [name, bytes] : tables()) {
      const bool isHidden = name.find(hidden) < name.size();
      const bool old = former.contains(name) && bytes == former.at(name);
      EXPECT_TRUE(old || isHidden || bytes == finished.at(name)) << name;
      isLeft = isLeft || isHidden;
    }
    return isLeft;
  }

  /// What Done has said behind its question.
  Texts messages() const {
    const bool asked = !wizard->messages.empty() && wizard->messages.front().ends_with(" ?");
    return {wizard->messages.begin() + (asked ? 1 : 0), wizard->messages.end()};
  }

  bool isRead() const { return wizard->program.wizard.state.project.exportCount == 8; }
  Form1& form() const { return wizard->program.wizard.form; }

  TemporaryFolder home;
  std::unique_ptr<Engineer> wizard;
  Contents former;
};

struct Faults : testing::Test {
  Faults() {
    Project clean;
    finishedIn = clean.home.path();
    systemCalls().folder = finishedIn;
    clean.enter();
    clean.edit();
    entered = systemCalls().made.size();
    clean.finish();
    calls = std::exchange(systemCalls(), {}).made;
    finished = clean.tables();
    EXPECT_TRUE(clean.wizard->ended);
    EXPECT_EQ(finished.size(), 11U);
  }

  /// Which calls of the run are struck: some of each kind, or all of them on request.
  std::vector<std::size_t> moments() const {
    const int every = std::getenv("KOVA_EVERY_CALL") != nullptr ? 1 : 8;
    std::map<std::string, int> seen;
    std::vector<std::size_t> chosen;
    for (std::size_t at = 1; at <= calls.size(); ++at) {
      if (seen[calls[at - 1].name]++ % every == 0) chosen.push_back(at);
    }
    return chosen;
  }

  /// True if the engineer was told.
  bool survives(const SystemCalls& fault) const {
    Project project;
    systemCalls() = fault;
    systemCalls().folder = project.home.path();
    project.enter();
    const std::string& status = project.wizard->program.wizard.statusLine.message;
    EXPECT_FALSE(project.isRead() && status.starts_with("Project not read")) << status;
    if (project.isRead()) project.edit();
    const std::string& name = calls[fault.at - 1].name;
    const std::string& path = calls[fault.at - 1].path;
    const bool inDone = fault.at > entered;
    if (inDone) project.finish();
    EXPECT_GE(std::exchange(systemCalls(), {}).made.size(), fault.at);

    const Texts said = project.messages();
    EXPECT_TRUE(said.size() <= (inDone ? 1U : 0U) || fault.onwards);
    const bool hides = project.expectWholeTables(inDone ? finished : project.former);
    EXPECT_TRUE(!hides || fault.onwards) << "a hidden file is left";
    if (inDone) {
      const std::string why = std::string(" : (File exists|") + std::strerror(fault.error) + ')';
      const std::regex stop("Could not (create exports\\.csv file|write \\S+)" + why);
      const bool stopped = !said.empty() && std::regex_match(said.back(), stop);
      EXPECT_EQ(project.wizard->ended, !stopped) << said.back();
      EXPECT_EQ(project.wizard->programs.started.size(), stopped ? 0U : 2U);
      // Nothing that fails on a file that is being written is silent, and nothing else that
      // matters.
      const bool beingWritten = path.find(hidden) < path.size() && name != "open";
      EXPECT_TRUE(!said.empty() || (project.tables() == finished && !beingWritten));
    } else {
      project.start();
      project.enter();
      project.edit();
    }

    project.finish();
    EXPECT_TRUE(project.wizard->ended) << "without the fault";
    EXPECT_EQ(project.tables(), finished);
    project.expectWholeTables(finished);
    return !said.empty();
  }

  std::vector<SystemCalls::Call> calls;
  std::size_t entered = 0;  ///< how many of them lie ahead of Done
  Contents finished;
  std::string finishedIn;  ///< the folder that they were made in
};

}  // namespace kova::test
