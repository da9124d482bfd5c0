// SPDX-License-Identifier: MIT
// Findings as text, JSON and SARIF, for people, scripts and code scanners.
#pragma once

#include <string>
#include <vector>

#include "project_tool/tool.h"
#include "review/findings.h"

namespace kova {

/// A directory with its findings, or the reason why it could not be read.
struct Checked {
  std::string directory;  ///< as on the command line
  std::vector<Finding> findings;
  std::string failure;
};

/// One line per finding, in the manner of compilers: "file:line:column: severity: message [rule]".
void printText(const Tool& tool, const std::vector<Checked>& all);
void printJson(const Tool& tool, const std::vector<Checked>& all);
/// The Static Analysis Results Interchange Format, version 2.1.0.
void printSarif(const Tool& tool, const std::vector<Checked>& all);

}  // namespace kova
