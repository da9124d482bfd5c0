// SPDX-License-Identifier: MIT
#include <algorithm>

#include "project_tool/finding_reports.h"

namespace kova {
namespace {

bool isUnreadableFile(const Finding& finding) {
  return finding.rule->id == "unreadable-file";
}

bool contains(const std::vector<std::string>& rules, const Finding& finding) {
  return std::find(rules.begin(), rules.end(), finding.rule->id) != rules.end();
}

Checked checkDirectory(const Tool& tool, const CheckOptions& options,
                       const std::string& directory) {
  Checked checked{.directory = directory, .findings = {}, .failure = {}};
  try {
    checked.findings =
        findFindings(readProject(*tool.machine.files, tool.wizardText(directory), tool.codePage));
    // What could not be read is reported whatever was chosen.
    std::erase_if(checked.findings, [&](const Finding& finding) {
      const bool isChosen = options.select.empty() || contains(options.select, finding);
      return !isUnreadableFile(finding) && (!isChosen || contains(options.ignore, finding));
    });
  } catch (const Failure& failure) {
    checked.failure = failure.what();
  }
  return checked;
}

bool couldNotBeRead(const Checked& checked) {
  const auto& findings = checked.findings;
  return !checked.failure.empty() ||
         std::any_of(findings.begin(), findings.end(),
                     [](const Finding& finding) { return isUnreadableFile(finding); });
}

/// The finding is at least as severe as the threshold.
bool counts(const Finding& finding, const std::string& threshold) {
  const Severity severity = finding.rule->severity;
  return threshold == nameOf(Severity::note) || severity == Severity::error ||
         (severity == Severity::warning && threshold == nameOf(Severity::warning));
}

}  // namespace

ExitStatus check(const Tool& tool, const CheckOptions& options) {
  std::vector<Checked> all;
  for (const std::string& directory : options.directories) {
    all.push_back(checkDirectory(tool, options, directory));
  }
  if (options.format == "json") {
    printJson(tool, all);
  } else if (options.format == "sarif") {
    printSarif(tool, all);
  } else {
    printText(tool, all);
  }
  for (const Checked& checked : all) {
    if (!checked.failure.empty()) tool.printError(checked.directory + ": " + checked.failure);
  }
  if (std::any_of(all.begin(), all.end(), couldNotBeRead)) return ExitStatus::error;
  const bool fails = std::any_of(all.begin(), all.end(), [&](const Checked& checked) {
    return std::any_of(checked.findings.begin(), checked.findings.end(),
                       [&](const Finding& finding) { return counts(finding, options.failOn); });
  });
  return fails ? ExitStatus::findings : ExitStatus::noFindings;
}

}  // namespace kova
