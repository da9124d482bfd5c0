// SPDX-License-Identifier: MIT
// kova-project: works on projects of the wizard from scripts and remote shells.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include "project_tool/tool.h"
#include "review/findings.h"

namespace {

using kova::ExitStatus;

/// The command line and its parsed options.
class CommandLine {
 public:
  CommandLine() {
    app_.name("kova-project");
    app_.set_version_flag("--version", "kova-project " KOVA_VERSION);
    app_.require_subcommand(1);
    // Otherwise paths that start with a slash are taken for options.
    app_.allow_windows_style_options(false);
    app_.footer(
        "Exit status: 0 no findings at or above the threshold, no differences; 1 findings, "
        "differences; 2 error.");
    addCheck();
    addDiff();
    addShow();
    addBackups();
    addRestore();
    addRules();
  }

  CLI::App& app() { return app_; }

  ExitStatus run(const kova::Tool& tool) const {
    if (*check_) return kova::check(tool, checkOptions_);
    if (*diff_) return kova::diff(tool, diffOptions_);
    if (*show_) return kova::show(tool, showOptions_);
    if (*backups_) return kova::backups(tool, directory_);
    if (*restore_) return kova::restore(tool, restoreOptions_);
    return kova::listRules(tool);
  }

 private:
  CLI::App* add(const std::string& name, const std::string& description) {
    CLI::App* command = app_.add_subcommand(name, description);
    command->set_version_flag("--version", "kova-project " KOVA_VERSION);
    return command;
  }

  void addCheck() {
    check_ = add("check", "Report problems in projects");
    check_->add_option("--format", checkOptions_.format, "Output format")
        ->check(CLI::IsMember({"text", "json", "sarif"}))
        ->capture_default_str();
    check_
        ->add_option("--fail-on", checkOptions_.failOn,
                     "Least severity of a finding that makes the exit status 1")
        ->check(CLI::IsMember({"error", "warning", "note"}))
        ->capture_default_str();
    std::vector<std::string> rules;
    for (const kova::Rule& rule : kova::rules()) rules.emplace_back(rule.id);
    check_->add_option("--select", checkOptions_.select, "Report these rules alone")
        ->check(CLI::IsMember(rules))
        ->option_text("RULE,...")
        ->delimiter(',')
        ->allow_extra_args(false);
    check_->add_option("--ignore", checkOptions_.ignore, "Do not report these rules")
        ->check(CLI::IsMember(rules))
        ->option_text("RULE,...")
        ->delimiter(',')
        ->allow_extra_args(false);
    check_->add_option("directory", checkOptions_.directories,
                       "Project directories (default: the current one)");
  }

  void addDiff() {
    diff_ = add("diff", "Compare a project row by row with a backup or another project");
    diff_->add_option("directory", diffOptions_.directory, "Project directory")->required();
    diff_->add_option("other", diffOptions_.other,
                      "Backup timestamp, or another project directory, to compare with (default: "
                      "the newest backup)");
  }

  void addShow() {
    show_ = add("show", "Print a project as the wizard reads it");
    show_->add_option("--format", showOptions_.format, "Output format")
        ->check(CLI::IsMember({"text", "json"}))
        ->capture_default_str();
    show_->add_option("directory", showOptions_.directory, "Project directory")->required();
  }

  void addBackups() {
    backups_ = add("backups", "List the backups of a project, newest first");
    backups_->add_option("directory", directory_, "Project directory")->required();
  }

  void addRestore() {
    restore_ = add("restore", "Restore files from a backup (current files are backed up first)");
    restore_->add_flag("--dry-run", restoreOptions_.dryRun,
                       "Show what would change, and write nothing");
    restore_->add_option("directory", restoreOptions_.directory, "Project directory")->required();
    restore_->add_option("timestamp", restoreOptions_.timestamp, "Backup timestamp")->required();
    restore_->add_option("file", restoreOptions_.files, "Files to restore (default: all)");
  }

  void addRules() { rules_ = add("rules", "Print the page of all rules that check uses"); }

  CLI::App app_{"Checks, compares and restores projects of the device server setup wizard."};
  CLI::App* check_ = nullptr;
  CLI::App* diff_ = nullptr;
  CLI::App* show_ = nullptr;
  CLI::App* backups_ = nullptr;
  CLI::App* restore_ = nullptr;
  CLI::App* rules_ = nullptr;
  kova::CheckOptions checkOptions_;
  kova::DiffOptions diffOptions_;
  kova::ShowOptions showOptions_;
  kova::RestoreOptions restoreOptions_;
  std::string directory_;
};

/// The exit status, or an error if the output could not be written.
int flushed(ExitStatus status) {
  std::cout.flush();
  if (std::cout) return static_cast<int>(status);
  std::cerr << "kova-project: could not write the output\n";
  return static_cast<int>(ExitStatus::error);
}

int run(const kova::Tool& tool, std::vector<std::string> arguments) {
  CommandLine line;
  // The message may contain arguments, which must not control the terminal.
  line.app().failure_message([&](const CLI::App*, const CLI::Error& error) {
    tool.printError(error.what());
    return "Run with --help for more information.\n";
  });
  try {
    // The parser expects them in reverse order.
    std::reverse(arguments.begin(), arguments.end());
    line.app().parse(std::move(arguments));
  } catch (const CLI::ParseError& error) {
    // Help and version arrive here too. A wrong command line must not look like findings.
    return line.app().exit(error) == 0 ? flushed(ExitStatus::noFindings)
                                       : static_cast<int>(ExitStatus::error);
  }
  try {
    return flushed(line.run(tool));
  } catch (const std::exception& failure) {
    tool.printError(failure.what());
    return static_cast<int>(ExitStatus::error);
  }
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const kova::CodePage codePage = kova::CodePage::ofLocale();
    const kova::Tool tool{codePage, kova::realMachine(codePage), std::cout, std::cerr};
    return run(tool, kova::terminalWords(argc, argv));
  } catch (const std::exception& failure) {
    std::cerr << "kova-project: " << failure.what() << '\n';
    return static_cast<int>(ExitStatus::error);
  }
}
