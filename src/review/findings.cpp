// SPDX-License-Identifier: MIT
#include "review/findings.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "review/checks.h"

namespace kova {

std::string_view nameOf(Severity severity) {
  switch (severity) {
    case Severity::note:
      return "note";
    case Severity::warning:
      return "warning";
    case Severity::error:
      break;
  }
  return "error";
}

std::span<const Rule> rules() {
  static const std::vector<Rule> all = [] {
    std::vector<Rule> rules;
    for (const auto part : {checks::fileRules(), checks::columnRules(), checks::propertyRules(),
                            checks::crossTableRules()}) {
      rules.insert(rules.end(), part.begin(), part.end());
    }
    return rules;
  }();
  return all;
}

std::vector<Finding> findFindings(const ProjectReading& project) {
  std::vector<Finding> findings;
  for (const Rule& rule : rules()) {
    rule.check(project, [&](const Place& place, const std::string& message) {
      findings.push_back({&rule, std::string(place.file), place.line, place.column, message});
    });
  }
  std::stable_sort(findings.begin(), findings.end(), [](const Finding& one, const Finding& other) {
    return std::tie(one.file, one.line, one.column) <
           std::tie(other.file, other.line, other.column);
  });
  return findings;
}

}  // namespace kova
