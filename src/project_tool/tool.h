// SPDX-License-Identifier: MIT
// The commands of kova-project and what they share.
#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/code_page.h"
#include "platform/machine.h"

namespace kova {

/// Exit status of a command, as diff and grep use it.
enum class ExitStatus : int { noFindings = 0, findings = 1, error = 2 };

inline constexpr int formatVersion = 1;  ///< of the JSON that commands print

struct Tool {
  const CodePage& codePage;
  Machine machine;
  std::ostream& out;  ///< for documents; lines go through printLine
  std::ostream& errors;

  /// A path of the command line as wizard text. Throws Failure if the code page lacks a character.
  std::string wizardText(const std::string& native) const;
  /// A directory of the command line. Throws Failure, with its name, if it does not exist.
  Path folder(const std::string& directory) const;
  /// Wizard text as the terminal shows it.
  std::string shown(const std::string& text) const { return codePage.toNative(text); }
  /// Prints a native text as one line. Texts of tables and file names must neither control the
  /// terminal nor look like lines of the program.
  void printLine(std::string_view text) const;
  void printError(const std::string& message) const;
};

struct CheckOptions {
  std::vector<std::string> directories = {"."};
  std::string format = "text";
  std::string failOn = "warning";   ///< least severity of a finding that makes the status 1
  std::vector<std::string> select;  ///< rules to report; empty for all
  std::vector<std::string> ignore;  ///< rules not to report
};
ExitStatus check(const Tool& tool, const CheckOptions& options);

struct DiffOptions {
  std::string directory;
  std::string other;  ///< a timestamp or a directory; empty for the newest backup
};
ExitStatus diff(const Tool& tool, const DiffOptions& options);

struct ShowOptions {
  std::string directory;
  std::string format = "text";
};
ExitStatus show(const Tool& tool, const ShowOptions& options);

ExitStatus backups(const Tool& tool, const std::string& directory);

struct RestoreOptions {
  std::string directory;
  std::int32_t timestamp = 0;
  std::vector<std::string> files;  ///< empty for all files of the set
  bool dryRun = false;
};
ExitStatus restore(const Tool& tool, const RestoreOptions& options);

/// Prints the page of all rules.
ExitStatus listRules(const Tool& tool);

}  // namespace kova
