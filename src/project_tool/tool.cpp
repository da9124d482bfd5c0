// SPDX-License-Identifier: MIT
#include "project_tool/tool.h"

#include "review/project_files.h"

namespace kova {

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

void Tool::complain(const std::string& what) const {
  errors << "kova-project: " << what << '\n';
}

}  // namespace kova
