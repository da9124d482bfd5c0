// SPDX-License-Identifier: MIT
// An engineer at the wizard without a toolkit: acts on the controls by their names, reads what
// shows, answers messages. The files are real, in a temporary directory.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "platform/posix.h"
#include "support/temporary_folder.h"
#include "wizard/wiring.h"

namespace kova::test {

struct FakeClock : Clock {
  std::int32_t now = 1700000000;
  std::int32_t unixTime() const override { return now; }
};

struct FakeEnvironment : Environment {
  std::map<std::string, std::string> values;
  std::set<std::string> unusable;
  std::string home;
  std::string variable(const std::string& name) const override {
    const auto value = values.find(name);
    return value == values.end() ? "" : value->second;
  }
  bool isUnusable(const std::string& name) const override { return unusable.contains(name); }
  std::string homeFolder() const override { return home; }
  std::string codePageName() const override { return "Windows-1252"; }
};

struct RecordingStarter : ProgramStarter {
  std::vector<std::string> started;
  std::string failure;
  void start(std::string_view commandLine) override {
    if (!failure.empty()) throw Failure(failure);
    started.emplace_back(commandLine);
  }
};

/// One run of the wizard in `home`.
class Engineer {
 public:
  explicit Engineer(std::string homeFolder, FileSystem* files = nullptr);

  /// The program comes up.
  void start() { program.start(); }
  /// One act or one look, as a line of words. Returns what is wrong with it, empty if nothing is.
  std::string carryOut(const std::string& line);
  /// A control's text, caption, entry, value or selection, as text.
  std::string shown(const std::string& control) const;
  TextField& field(const std::string& name) const {
    return *std::get<TextField*>(controls_.at(name));
  }

  FakeClock clock;
  FakeEnvironment environment;
  RecordingStarter programs;
  std::unique_ptr<FileSystem> realFiles;
  std::string home;
  std::deque<Answer> answers;        ///< for questions; those of the Enter key once it is empty
  std::deque<std::string> messages;  ///< shown and not looked at yet
  bool ended = false;
  SetupWizard program;

 private:
  const ControlPointer& control(const std::string& name) const;
  std::string act(const std::string& verb, const std::string& name, const std::string& rest);
  std::string look(const std::string& verb, const std::string& name, const std::string& rest);

  std::map<std::string, ControlPointer> controls_;
};

/// `\r`, `\n`, `\t`, `\0` and `\xHH` in a script's text.
std::string unescaped(const std::string& text);

}  // namespace kova::test
