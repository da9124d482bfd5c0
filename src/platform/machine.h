// SPDX-License-Identifier: MIT
// The machine that the program runs on. Only the code below this header depends on its system.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/code_page.h"
#include "platform/platform.h"

namespace kova {

/// The objects that a Platform refers to. The code page outlives them.
struct Machine {
  std::unique_ptr<FileSystem> files;
  std::unique_ptr<Environment> environment;
  std::unique_ptr<Clock> clock;
  std::unique_ptr<ProgramStarter> programs;
  Platform platform() const { return {*files, *environment, *clock, *programs}; }
};

std::unique_ptr<FileSystem> realFileSystem(const CodePage& codePage);
std::unique_ptr<Environment> realEnvironment(const CodePage& codePage);
std::unique_ptr<Clock> realClock();
std::unique_ptr<ProgramStarter> realProgramStarter(const CodePage& codePage);

inline Machine realMachine(const CodePage& codePage) {
  return {realFileSystem(codePage), realEnvironment(codePage), realClock(),
          realProgramStarter(codePage)};
}

/// Why no window can be shown, as the end of a message; empty if one can.
std::string missingDisplay();

/// The arguments of the command line as native text, which the terminal shows correctly when it is
/// printed.
std::vector<std::string> terminalWords(int argc, char** argv);

}  // namespace kova
