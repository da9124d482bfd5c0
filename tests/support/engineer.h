// SPDX-License-Identifier: MIT
// An engineer at the wizard without a toolkit: works on the controls, answers messages. The files
// are real, in a temporary directory.
#pragma once

#include <cstdint>
#include <deque>
#include <iterator>
#include <map>
#include <memory>
#include <ostream>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/machine.h"
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

/// Live rows of the three tables.
struct Rows {
  int properties = 0;
  int history = 0;
  int alarms = 0;
  bool operator==(const Rows&) const = default;
  friend std::ostream& operator<<(std::ostream& out, const Rows& rows) {
    return out << rows.properties << ' ' << rows.history << ' ' << rows.alarms;
  }
};

/// The words of a text.
inline std::vector<std::string> words(const std::string& text) {
  std::istringstream stream(text);
  return {std::istream_iterator<std::string>(stream), {}};
}

/// Writes `text` in place of what the field holds.
inline void type(TextField& field, std::string_view text) {
  field.edit(text, text.size());
}

/// Clicks into the field ahead of a character.
inline void clickAt(TextField& field, std::size_t place) {
  field.setCaret(place);
  field.click();
}

/// A click of the mouse, on the list a double one.
void click(const ControlPointer& control);

/// One run of the wizard in `home`.
class Engineer {
 public:
  explicit Engineer(std::string homeFolder);

  /// The program comes up.
  void start() { program.start(); }
  Rows rows() const;
  /// A control by its name in the design; std::out_of_range if there is none.
  const ControlPointer& control(const std::string& name) const { return controls_.at(name); }
  TextField& field(const std::string& name) const {
    return *std::get<TextField*>(controls_.at(name));
  }

  FakeClock clock;
  FakeEnvironment environment;
  RecordingStarter programs;
  std::unique_ptr<FileSystem> files;
  std::string home;
  std::deque<Answer> answers;        ///< for questions; those of the Enter key once it is empty
  std::deque<std::string> messages;  ///< shown and not looked at yet
  bool ended = false;
  SetupWizard program;

 private:
  Answer answer(const Message& message);

  std::map<std::string, ControlPointer> controls_;
};

}  // namespace kova::test
