// SPDX-License-Identifier: MIT
// What the commands of kova-project have in common.
#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/code_page.h"
#include "platform/machine.h"

namespace kova {

/// How a command ends; the meaning is that of the tools that it stands beside.
enum class ExitStatus : int { noFindings = 0, findings = 1, error = 2 };

inline constexpr int formatVersion = 1;  ///< of the JSON that commands print

struct Tool {
  const CodePage& codePage;
  Machine machine;
  std::ostream& out;  ///< for documents; lines go through printLine
  std::ostream& errors;

  /// A path of the command line as wizard text. Throws Failure if wizard text can't tell it.
  std::string wizardText(const std::string& native) const;
  /// A directory of the command line. Throws Failure, which names it, if there is none.
  Path folder(const std::string& directory) const;
  /// Wizard text as the terminal shows it.
  std::string shown(const std::string& text) const { return codePage.toNative(text); }
  /// A native text as one line, whatever it holds: texts of tables and names of files must neither
  /// control the terminal nor pass for lines of the program's own.
  void printLine(std::string_view text) const;
  void complain(const std::string& what) const;
};

struct CheckOptions {
  std::vector<std::string> directories;
  std::string format = "text";
};
ExitStatus check(const Tool& tool, const CheckOptions& options);

struct DiffOptions {
  std::string directory;
  std::string other;  ///< a timestamp or a directory; empty for the newest backups
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
  std::vector<std::string> files;  ///< all of the set if there are none
  bool dryRun = false;
};
ExitStatus restore(const Tool& tool, const RestoreOptions& options);

/// The page of all rules.
ExitStatus listRules(const Tool& tool);

}  // namespace kova
