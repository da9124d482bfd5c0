// SPDX-License-Identifier: MIT
// The machine that the program runs on. Only what lies behind this header knows its system.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/code_page.h"
#include "platform/platform.h"

namespace kova {

/// The machine itself, with all objects that a Platform refers to. `codePage` outlives them.
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

/// The real machine.
inline Machine realMachine(const CodePage& codePage) {
  return {realFileSystem(codePage), realEnvironment(codePage), realClock(),
          realProgramStarter(codePage)};
}

/// Why no window can be shown here, as the end of a message; empty if one can.
std::string missingDisplay();

/// The words of the command line behind the program's name, spelled as file names are. What the
/// program prints in that spelling is shown so by the terminal.
std::vector<std::string> terminalWords(int argc, char** argv);

}  // namespace kova
