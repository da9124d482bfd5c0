// SPDX-License-Identifier: MIT
#include "review/findings.h"

#include <algorithm>
#include <map>
#include <tuple>
#include <utility>

#include "review/checks.h"

namespace kova {
namespace {

/// Findings of one rule in one file that are listed one by one.
constexpr std::size_t listedFindings = 20;

/// A file's errors come first, since what follows may be their consequence.
bool isBefore(const Finding& one, const Finding& other) {
  return std::tie(one.file, other.rule->severity, one.line, one.column) <
         std::tie(other.file, one.rule->severity, other.line, other.column);
}

/// Replaces the findings of a rule in a file that are not listed by their number.
void countRest(std::vector<Finding>& findings) {
  using RuleInFile = std::pair<std::string, const Rule*>;
  const auto keyOf = [](const Finding& finding) { return RuleInFile(finding.file, finding.rule); };
  std::map<RuleInFile, std::size_t> found;
  for (const Finding& finding : findings) ++found[keyOf(finding)];
  std::map<RuleInFile, std::size_t> passed;
  std::vector<Finding> kept;
  for (Finding& finding : findings) {
    const std::size_t all = found[keyOf(finding)];
    const std::size_t before = passed[keyOf(finding)]++;
    // A count in place of a single finding would hide it and save no line.
    const bool isCounted = all > listedFindings + 1 && before >= listedFindings;
    if (isCounted && before > listedFindings) continue;
    if (isCounted) finding.message = "and " + std::to_string(all - listedFindings) + " more";
    kept.push_back(std::move(finding));
  }
  findings = std::move(kept);
}

}  // namespace

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
  std::stable_sort(findings.begin(), findings.end(), isBefore);
  countRest(findings);
  return findings;
}

}  // namespace kova
