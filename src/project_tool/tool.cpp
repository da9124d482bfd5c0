// SPDX-License-Identifier: MIT
#include "project_tool/tool.h"

#include "review/project_files.h"

#include <algorithm>

namespace kova {
namespace {

std::string lineOf(const Tool& tool, std::string_view text) {
  std::string line = tool.codePage.printable(text);
  // Runners of build jobs carry out a line that begins so, blanks of any script ahead of it or not.
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
    throw Failure("the name has characters that " + codePage.name() + " lacks");
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

void Tool::complain(const std::string& what) const {
  errors << lineOf(*this, "kova-project: " + what);
}

}  // namespace kova
