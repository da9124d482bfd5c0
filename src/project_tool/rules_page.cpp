// SPDX-License-Identifier: MIT
// The page of all rules, docs/checking.md.
#include <sstream>
#include <string>

#include "project_tool/tool.h"
#include "review/findings.h"

namespace kova {
namespace {

constexpr std::string_view head = R"(# What kova-project checks

<!-- Made by "kova-project rules"; a test compares it with the program. -->

`kova-project check DIRECTORY` reads a project as the wizard does and reports findings by these
rules. A *note* is for information, a *warning* points to wrong or misread data, an *error* loses
rows, names or values, or keeps them from being read. A project that the wizard writes from good
input has none.

An example shows the relevant part of a file. A byte that can't be shown here appears as its number,
such as `<0A>` for an LF without a CR before it.
)";

constexpr std::size_t width = 100;

/// A paragraph in lines of the page's width.
std::string wrapped(const std::string& paragraph) {
  std::string lines;
  std::size_t column = 0;
  std::istringstream words(paragraph);
  for (std::string word; words >> word;) {
    const bool fits = column + 1 + word.size() <= width;
    if (column > 0) lines += fits ? ' ' : '\n';
    column = (column > 0 && fits ? column + 1 : 0) + word.size();
    lines += word;
  }
  return lines + '\n';
}

std::string shownByte(char character) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  const auto byte = static_cast<unsigned char>(character);
  return {'<', digits[byte >> 4U], digits[byte & 15U], '>'};
}

/// Lines end as those of the page. Bytes that can't be shown appear as their number.
std::string shownExample(std::string_view text) {
  std::string shown;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto byte = static_cast<unsigned char>(text[at]);
    const bool endsLine = text.substr(at).starts_with("\r\n");
    if (endsLine) {
      shown += '\n';
      ++at;
    } else if (byte < ' ' || byte >= 0x7F) {
      shown += shownByte(text[at]);
    } else {
      shown += text[at];
    }
  }
  if (!shown.ends_with('\n')) shown += '\n';
  return shown;
}

void printExample(const Tool& tool, const Example& example) {
  if (example.file.empty()) return;
  tool.out << "\nIn `" << example.file << "`:\n\n```text\n"
           << shownExample(example.broken) << "```\n";
  if (example.kept.empty()) return;
  tool.out << "\nThis is correct:\n\n```text\n" << shownExample(example.kept) << "```\n";
}

}  // namespace

ExitStatus listRules(const Tool& tool) {
  tool.out << head << '\n';
  for (const Rule& rule : rules()) tool.out << "- [" << rule.id << "](#" << rule.id << ")\n";
  for (const Rule& rule : rules()) {
    tool.out << "\n## " << rule.id << "\n\n*" << nameOf(rule.severity) << ".* " << rule.title
             << ".\n\n"
             << wrapped(std::string(rule.impact)) << '\n'
             << wrapped("**Fix:** " + std::string(rule.fix));
    printExample(tool, rule.example);
  }
  return ExitStatus::noFindings;
}

}  // namespace kova
