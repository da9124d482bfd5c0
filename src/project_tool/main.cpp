// SPDX-License-Identifier: MIT
// kova-project: looks at projects of the wizard from scripts and remote shells.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include "project_tool/tool.h"

namespace {

using kova::ExitStatus;

/// The command line: what was asked for, once it has been parsed.
class CommandLine {
 public:
  CommandLine() {
    app_.name("kova-project");
    app_.set_version_flag("--version", "kova-project " KOVA_VERSION);
    app_.require_subcommand(1);
    // They would make options of paths.
    app_.allow_windows_style_options(false);
    app_.footer(
        "Ends with 0 if nothing was found, 1 if something was, 2 if something could not be done.");
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
    check_ = add("check", "Tell what is wrong with projects");
    check_->add_option("--format", checkOptions_.format, "How findings are printed")
        ->check(CLI::IsMember({"text", "json", "sarif"}))
        ->capture_default_str();
    check_->add_option("directory", checkOptions_.directories, "Project directories")->required();
  }

  void addDiff() {
    diff_ = add("diff", "Compare a project, row by row, with its backups or with another project");
    diff_->add_option("directory", diffOptions_.directory, "Project directory")->required();
    diff_->add_option("other", diffOptions_.other,
                      "Stamp of backups, from which the project has changed to what it is, or a "
                      "directory to which it is to change; the newest backups without it");
  }

  void addShow() {
    show_ = add("show", "Print a project as the wizard reads it");
    show_->add_option("--format", showOptions_.format, "How it is printed")
        ->check(CLI::IsMember({"text", "json"}))
        ->capture_default_str();
    show_->add_option("directory", showOptions_.directory, "Project directory")->required();
  }

  void addBackups() {
    backups_ = add("backups", "List the backups of a project, the newest first");
    backups_->add_option("directory", directory_, "Project directory")->required();
  }

  void addRestore() {
    restore_ = add("restore", "Bring back what backups hold; what is there is backed up first");
    restore_->add_flag("--dry-run", restoreOptions_.dryRun, "Only tell what would change");
    restore_->add_option("directory", restoreOptions_.directory, "Project directory")->required();
    restore_->add_option("stamp", restoreOptions_.timestamp, "Stamp of the backups")->required();
    restore_->add_option("file", restoreOptions_.files, "Files to bring back; all without it");
  }

  void addRules() { rules_ = add("rules", "Print the page of all rules"); }

  CLI::App app_{"Looks at projects of the server setup wizard."};
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

/// The exit status, once everything has been printed.
int printed(ExitStatus ending) {
  std::cout.flush();
  if (std::cout) return static_cast<int>(ending);
  std::cerr << "kova-project: the output could not be written\n";
  return static_cast<int>(ExitStatus::error);
}

int run(const kova::Tool& tool, std::vector<std::string> words) {
  CommandLine line;
  // It echoes words of the command line.
  line.app().failure_message([&](const CLI::App*, const CLI::Error& error) {
    tool.complain(error.what());
    return "Run with --help for more information.\n";
  });
  try {
    // The parser takes them from the end.
    std::reverse(words.begin(), words.end());
    line.app().parse(std::move(words));
  } catch (const CLI::ParseError& asked) {
    // Help and version come this way as well; a wrong command line must not look like findings.
    return line.app().exit(asked) == 0 ? printed(ExitStatus::noFindings)
                                       : static_cast<int>(ExitStatus::error);
  }
  try {
    return printed(line.run(tool));
  } catch (const std::exception& failure) {
    tool.complain(failure.what());
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
