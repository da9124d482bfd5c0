// SPDX-License-Identifier: MIT
// The interfaces to the machine: files, environment, clock, other programs.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/file_system.h"

namespace kova {

/// The environment of the process.
struct Environment {
  virtual ~Environment() = default;
  /// Value of a variable as text; empty if it is not set or unusable.
  virtual std::string variable(const std::string& name) const = 0;
  /// The variable has a value that the code page can't represent.
  virtual bool isUnusable(const std::string& name) const = 0;
  /// The directory that contains the projects unless the environment names a drive: the engineer's
  /// home directory (from the environment, else of the account), or "C:" on a system with drives.
  /// Empty if the code page can represent none of them.
  virtual std::string homeFolder() const = 0;
  /// Name of the code page of the wizard's texts, for messages.
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
  /// Starts the program named by the first word of `commandLine`, without waiting and without a
  /// shell: spaces separate words, no other character is special. Only absolute folders of the
  /// search path are searched. Throws Failure if the program can't be started or if a further word
  /// begins with a dash and could be an option. Where programs split their command line themselves,
  /// also refuses words that begin with a slash or contain a quotation mark, tab or line ending.
  virtual void start(std::string_view commandLine) = 0;
};

/// All interfaces to the machine. The objects outlive the wizard.
struct Platform {
  FileSystem& files;
  Environment& environment;
  Clock& clock;
  ProgramStarter& programs;
};

}  // namespace kova
