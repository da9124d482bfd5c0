// SPDX-License-Identifier: MIT
// The machine as the wizard sees it: files, environment, clock, other programs.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/file_system.h"

namespace kova {

/// Names and values around the process.
struct Environment {
  virtual ~Environment() = default;
  /// Value of a variable as wizard text; empty if it is not set or unusable.
  virtual std::string variable(const std::string& name) const = 0;
  /// A variable is set to a value that wizard text can't tell without altering it.
  virtual bool isUnusable(const std::string& name) const = 0;
  /// Where projects lie unless the environment names a drive: the engineer's home directory (the
  /// environment's, else the account's), or "C:" on a system with drives. Empty if wizard text can
  /// tell none of them.
  virtual std::string homeFolder() const = 0;
  /// Name of the code page that wizard text is in, for messages.
  virtual std::string codePageName() const = 0;
};

/// Time of day.
struct Clock {
  virtual ~Clock() = default;
  /// Seconds since 1970-01-01 00:00:00 UTC.
  virtual std::int32_t unixTime() const = 0;
};

/// Starts other programs.
struct ProgramStarter {
  virtual ~ProgramStarter() = default;
  /// Starts the program that the first word of `commandLine` names, without waiting for it and
  /// without a shell: words end at blanks, nothing else has a meaning. The program is looked up on
  /// the absolute folders of the search path only. Throws Failure if it can't be started or if a
  /// further word begins with a dash and would be taken for an option. Where a program parts its
  /// words itself, one that begins with a slash or holds a quotation mark, a tab or a line ending
  /// is refused as well.
  virtual void start(std::string_view commandLine) = 0;
};

/// All that the wizard is handed of the machine. The referred objects outlive the wizard.
struct Platform {
  FileSystem& files;
  Environment& environment;
  Clock& clock;
  ProgramStarter& programs;
};

}  // namespace kova
