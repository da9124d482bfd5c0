// SPDX-License-Identifier: MIT
#include "project_tool/finding_reports.h"

#include <algorithm>
#include <cctype>
#include <sstream>

#include "project_tool/json.h"

namespace kova {
namespace {

std::string pathOf(const Checked& checked, const Finding& finding) {
  return (Path{checked.directory} / finding.file).native;
}

Json jsonOf(const Tool& tool, const Finding& finding) {
  return {{"file", finding.file},           {"line", finding.line},
          {"column", finding.column},       {"severity", nameOf(finding.rule->severity)},
          {"rule", finding.rule->id},       {"text", tool.codePage.toUtf8(finding.message)},
          {"impact", finding.rule->impact}, {"fix", finding.rule->fix}};
}

/// A path as a URI reference.
std::string uriOf(const std::string& path) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  constexpr std::string_view plain = "-._~";
  // Without a separator before it, a drive would look like a scheme.
  const bool hasDrive = pathSeparators.size() > 1 && path.find(':') == 1;
  std::string uri = hasDrive ? '/' + path.substr(0, 2) : "";
  for (const char character : path.substr(hasDrive ? 2 : 0)) {
    const auto byte = static_cast<unsigned char>(character);
    if (pathSeparators.find(character) != std::string_view::npos) {
      uri += '/';
    } else if (std::isalnum(byte) != 0 || plain.find(character) != std::string_view::npos) {
      uri += character;
    } else {
      ((uri += '%') += digits[byte >> 4U]) += digits[byte & 15U];
    }
  }
  return uri;
}

Json sarifRules() {
  Json list = Json::array();
  for (const Rule& rule : rules()) {
    list.push_back({{"id", rule.id},
                    {"shortDescription", {{"text", rule.title}}},
                    {"fullDescription", {{"text", rule.impact}}},
                    {"help", {{"text", rule.fix}}},
                    {"defaultConfiguration", {{"level", nameOf(rule.severity)}}}});
  }
  return list;
}

Json sarifResult(const Tool& tool, const Checked& checked, const Finding& finding) {
  Json place = {{"artifactLocation", {{"uri", uriOf(pathOf(checked, finding))}}}};
  if (finding.line > 0) {
    place["region"] = {{"startLine", finding.line},
                       {"startColumn", std::max<std::size_t>(finding.column, 1)}};
  }
  return {{"ruleId", finding.rule->id},
          {"ruleIndex", finding.rule - rules().data()},
          {"level", nameOf(finding.rule->severity)},
          {"message", {{"text", tool.codePage.toUtf8(finding.message)}}},
          {"locations", Json::array({{{"physicalLocation", place}}})}};
}

}  // namespace

void printText(const Tool& tool, const std::vector<Checked>& all) {
  for (const Checked& checked : all) {
    for (const Finding& finding : checked.findings) {
      std::ostringstream line;
      line << pathOf(checked, finding) << ':';
      if (finding.line > 0) line << finding.line << ':' << finding.column << ':';
      line << ' ' << nameOf(finding.rule->severity) << ": " << tool.shown(finding.message) << " ["
           << finding.rule->id << ']';
      tool.printLine(line.str());
    }
  }
}

void printJson(const Tool& tool, const std::vector<Checked>& all) {
  Json directories = Json::array();
  for (const Checked& checked : all) {
    Json findings = Json::array();
    for (const Finding& finding : checked.findings) findings.push_back(jsonOf(tool, finding));
    Json directory = {{"directory", checked.directory}, {"findings", findings}};
    if (!checked.failure.empty()) directory["failure"] = checked.failure;
    directories.push_back(directory);
  }
  print(tool, {{"version", formatVersion}, {"directories", directories}});
}

void printSarif(const Tool& tool, const std::vector<Checked>& all) {
  Json results = Json::array();
  Json notifications = Json::array();
  for (const Checked& checked : all) {
    for (const Finding& finding : checked.findings) {
      results.push_back(sarifResult(tool, checked, finding));
    }
    if (checked.failure.empty()) continue;
    const std::string text = checked.directory + ": " + checked.failure;
    notifications.push_back({{"level", "error"}, {"message", {{"text", text}}}});
  }
  const Json driver = {
      {"name", "kova-project"}, {"version", KOVA_VERSION}, {"rules", sarifRules()}};
  const Json invocation = {{"executionSuccessful", notifications.empty()},
                           {"toolExecutionNotifications", notifications}};
  const Json run = {{"tool", {{"driver", driver}}},
                    {"columnKind", "unicodeCodePoints"},
                    {"invocations", Json::array({invocation})},
                    {"results", results}};
  print(tool, {{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"},
               {"version", "2.1.0"},
               {"runs", Json::array({run})}});
}

}  // namespace kova
