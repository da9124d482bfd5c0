// SPDX-License-Identifier: MIT
// The machine's own file system, in a folder of the test's.
#pragma once

#include <gtest/gtest.h>

#include <functional>

#include "platform/machine.h"
#include "support/temporary_folder.h"

namespace kova::test {

using Names = std::set<std::string>;
using Act = std::function<void()>;

inline std::string failureOf(const Act& act) {
  try {
    act();
    return "no failure";
  } catch (const Failure& failure) {
    return failure.what();
  }
}

struct RealFiles : testing::Test {
  Path path(const std::string& name) const {
    return files->path(folder.path() + pathSeparator + name);
  }
  void replaceBy(const std::string& name, std::string_view content) const {
    replace(*files, path(name), content);
  }

  TemporaryFolder folder;
  Path here{folder.path()};
  CodePage page = CodePage::windows1252();
  std::unique_ptr<FileSystem> files = realFileSystem(page);
};

}  // namespace kova::test
