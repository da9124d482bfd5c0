// SPDX-License-Identifier: MIT
// A flow as a table of short scripts: acts of an engineer, and what shows and lies on disk then.
#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "support/engineer.h"

namespace kova::test {

struct Script {
  std::string name;
  std::string lines;
};

/// Carries a script out, act by act; every message must have been looked at in the end. Acts end
/// at "; " or at the end of a line.
inline void play(Engineer& engineer, const Script& script) {
  std::istringstream lines(script.lines);
  for (std::string line; std::getline(lines, line);) {
    line.erase(0, line.find_first_not_of(' '));
    while (!line.empty()) {
      const auto end = line.find("; ");
      const std::string wrong = engineer.carryOut(line.substr(0, end));
      ASSERT_TRUE(wrong.empty()) << script.name << ": " << line << '\n' << wrong;
      line.erase(0, end == std::string::npos ? end : end + 2);
    }
  }
  ASSERT_TRUE(engineer.messages.empty()) << script.name << ": " << engineer.messages.front();
}

inline void playFresh(const Script& script) {
  const TemporaryFolder home;
  Engineer engineer(home.path());
  engineer.start();
  play(engineer, script);
}

}  // namespace kova::test
