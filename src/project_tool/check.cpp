// SPDX-License-Identifier: MIT
#include <algorithm>

#include "project_tool/finding_reports.h"

namespace kova {
namespace {

Checked checkDirectory(const Tool& tool, const std::string& directory) {
  Checked checked{.directory = directory, .findings = {}, .failure = {}};
  try {
    checked.findings =
        findFindings(readProject(*tool.machine.files, tool.wizardText(directory), tool.codePage));
  } catch (const Failure& failure) {
    checked.failure = failure.what();
  }
  return checked;
}

bool couldNotBeRead(const Checked& checked) {
  return !checked.failure.empty() ||
         std::any_of(checked.findings.begin(), checked.findings.end(),
                     [](const Finding& finding) { return finding.rule->id == "unreadable-file"; });
}

}  // namespace

ExitStatus check(const Tool& tool, const CheckOptions& options) {
  std::vector<Checked> all;
  for (const std::string& directory : options.directories) {
    all.push_back(checkDirectory(tool, directory));
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
  const bool isClean = std::all_of(all.begin(), all.end(),
                                   [](const Checked& checked) { return checked.findings.empty(); });
  return isClean ? ExitStatus::noFindings : ExitStatus::findings;
}

}  // namespace kova
