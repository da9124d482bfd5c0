// SPDX-License-Identifier: MIT
// Findings as people, scripts and code scanners read them.
#pragma once

#include <string>
#include <vector>

#include "project_tool/tool.h"
#include "review/findings.h"

namespace kova {

/// A directory and what was found in it, or why it could not be read.
struct Checked {
  std::string directory;  ///< as on the command line
  std::vector<Finding> findings;
  std::string failure;
};

/// A line a finding, as compilers print them: "file:line:column: severity: text [rule]".
void printText(const Tool& tool, const std::vector<Checked>& all);
void printJson(const Tool& tool, const std::vector<Checked>& all);
/// The Static Analysis Results Interchange Format, version 2.1.0.
void printSarif(const Tool& tool, const std::vector<Checked>& all);

}  // namespace kova
