// SPDX-License-Identifier: MIT
// Findings about a project: rules that check its files as the wizard reads them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/code_page.h"
#include "review/project_reading.h"

namespace kova {

/// A note is for information, a warning points to wrong or misread data, an error loses rows, names
/// or values or keeps them from being read.
enum class Severity : std::uint8_t { note, warning, error };

std::string_view nameOf(Severity severity);

using Report = std::function<void(const Place& place, const std::string& message)>;

/// A change that breaks the rule, and a similar one that does not, for the rule's page and test.
struct Example {
  std::string_view file;
  std::string_view instead;  ///< the text to replace; empty for the whole file
  std::string_view broken;
  std::string_view kept;
};

struct Rule {
  std::string_view id;
  Severity severity = Severity::warning;
  std::string_view title;   ///< the problem
  std::string_view impact;  ///< what it leads to
  std::string_view fix;     ///< what to do
  Example example;
  void (*check)(const ProjectReading& project, const Report& report) = nullptr;
};

/// All rules in the order of their page.
std::span<const Rule> rules();

struct Finding {
  const Rule* rule = nullptr;
  std::string file;  ///< native name
  std::size_t line = 0;
  std::size_t column = 0;
  std::string message;  ///< without a full stop, as wizard text
};

/// Findings sorted by file, then severity, errors first, then place. Of more than 21 of one rule in
/// a file the last one listed is at the 21st place and counts the rest.
std::vector<Finding> findFindings(const ProjectReading& project);

}  // namespace kova
