// SPDX-License-Identifier: MIT
// What is wrong with a project, or will be: rules over its files as the wizard reads them.
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

/// A note is worth knowing, a warning costs something, an error loses rows or keeps them from being
/// read.
enum class Severity : std::uint8_t { note, warning, error };

std::string_view nameOf(Severity severity);

using Report = std::function<void(const Place& place, const std::string& what)>;

/// A change of a text that makes a project break its rule, and one that keeps it, for the rule's
/// page and its test.
struct Example {
  std::string_view file;
  std::string_view instead;  ///< of this text; of the whole file if it is empty
  std::string_view broken;
  std::string_view kept;
};

struct Rule {
  std::string_view id;
  Severity severity = Severity::warning;
  std::string_view title;   ///< what it is
  std::string_view impact;  ///< what it will do
  std::string_view fix;     ///< what to do
  Example example;
  void (*check)(const ProjectReading& project, const Report& report) = nullptr;
};

/// All rules in the order of the page that lists them.
std::span<const Rule> rules();

struct Finding {
  const Rule* rule = nullptr;
  std::string file;  ///< name in the machine's own form
  std::size_t line = 0;
  std::size_t column = 0;
  std::string message;  ///< a message without its full stop, in wizard text
};

/// Findings in the order of files, lines and columns.
std::vector<Finding> findFindings(const ProjectReading& project);

}  // namespace kova
