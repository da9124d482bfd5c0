// SPDX-License-Identifier: MIT
// The platform on POSIX systems. The only floor that knows the operating system.
#pragma once

#include <memory>

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

std::unique_ptr<FileSystem> posixFileSystem(const CodePage& codePage);
std::unique_ptr<Environment> posixEnvironment(const CodePage& codePage);
std::unique_ptr<Clock> posixClock();
std::unique_ptr<ProgramStarter> posixProgramStarter(const CodePage& codePage);

/// The real machine.
Machine posixMachine(const CodePage& codePage);

}  // namespace kova
