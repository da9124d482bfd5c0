// SPDX-License-Identifier: MIT
// A disk on which names that differ in case are one.
#pragma once

#include <string>

#include "platform/code_page.h"
#include "review/overlay_files.h"

namespace kova::test {

class CaselessDisk : public OverlayFiles {
 public:
  using OverlayFiles::OverlayFiles;
  bool ignoresCase(const Path&) const override { return true; }
  std::string withoutCase(std::string_view name) const override {
    std::string folded(name);
    for (char& letter : folded) letter = CodePage::windows1252().capital(letter);
    return folded;
  }
  bool fileExists(const Path& file) const override { return OverlayFiles::fileExists(real(file)); }
  std::string read(const Path& file) const override { return OverlayFiles::read(real(file)); }
  std::unique_ptr<OutputFile> create(const Path& file) override {
    return OverlayFiles::create(real(file));
  }
  bool copyAside(const Path& from, const Path& to) override {
    return OverlayFiles::copyAside(real(from), to);
  }
  std::optional<FileState> state(const Path& file) const override {
    return OverlayFiles::state(real(file));
  }

 private:
  /// The name under which the folder lists the file.
  Path real(const Path& file) const {
    if (!folderExists(file.parent())) return file;
    for (const std::string& name : plainFiles(file.parent())) {
      if (withoutCase(name) == withoutCase(file.leaf())) return file.parent() / name;
    }
    return file;
  }
};

}  // namespace kova::test
