// SPDX-License-Identifier: MIT
#include "project_tool/tool.h"

#include "review/project_files.h"

#include <algorithm>

namespace kova {
namespace {

std::string lineOf(const Tool& tool, std::string_view text) {
  std::string line = tool.codePage.printable(text);
  // CI runners execute such a line as a command, even after spaces of any script.
  const auto sign = std::find_if(
      line.begin(), line.end(), [](char character) { return character > ' ' && character <= '~'; });
  const auto start = static_cast<std::size_t>(sign - line.begin());
  if (line.compare(start, 2, "::") == 0) line.replace(start, 1, "\\072");
  return line + '\n';
}

}  // namespace

std::string Tool::wizardText(const std::string& native) const {
  std::string text = codePage.fromNative(native);
  if (codePage.toNative(text) != native) {
    throw Failure("the name has characters that are not in " + codePage.name());
  }
  while (text.size() > 1 && pathSeparators.find(text.back()) != std::string_view::npos) {
    text.pop_back();
  }
  return text;
}

Path Tool::folder(const std::string& directory) const {
  return naming(directory, [&] {
    Path folder = machine.files->path(wizardText(directory));
    if (!machine.files->folderExists(folder)) throw Failure("There is no such directory");
    return folder;
  });
}

void Tool::printLine(std::string_view text) const {
  out << lineOf(*this, text);
}

void Tool::printError(const std::string& message) const {
  errors << lineOf(*this, "kova-project: " + message);
}

}  // namespace kova
