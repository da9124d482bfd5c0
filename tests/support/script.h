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

/// Carries a script out line by line; every message must have been looked at in the end.
inline void play(Engineer& engineer, const Script& script) {
  std::istringstream lines(script.lines);
  std::string line;
  for (int number = 0; std::getline(lines, line); ++number) {
    line.erase(0, line.find_first_not_of(' '));
    if (line.empty()) continue;
    const std::string wrong = engineer.carryOut(line);
    ASSERT_TRUE(wrong.empty()) << script.name << ", line " << number << ": " << line << "\n"
                               << wrong;
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
