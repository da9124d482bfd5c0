// SPDX-License-Identifier: MIT
// A table in memory, for a row that is written and read back before it goes to the disk.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tables/tagged_csv.h"

namespace kova {

/// Lets a writer put its table into `content`.
inline ReplaceFile into(std::string& content) {
  return [&content](const Path&, std::string_view table) { content = table; };
}

/// A disk with just one file, whatever its name, for readers. Creating a file throws Failure.
class MemoryFile : public FileSystem {
 public:
  explicit MemoryFile(std::string content) : content_(std::move(content)) {}

  Path path(std::string_view text) const override { return {std::string(text)}; }
  std::string text(std::string_view native) const override { return std::string(native); }
  bool fileExists(const Path&) const override { return true; }
  bool folderExists(const Path&) const override { return true; }
  std::string read(const Path&) const override { return content_; }
  std::unique_ptr<OutputFile> create(const Path&) override {
    throw Failure("This file is read only");
  }
  void createFolder(const Path&) override {}
  void copy(const Path&, const Path&) override {}
  bool copyAside(const Path&, const Path&) override { return true; }
  void remove(const Path&) override {}
  std::vector<std::string> plainFiles(const Path&) const override { return {}; }
  std::optional<FileState> state(const Path&) const override { return std::nullopt; }
  std::unique_ptr<FolderLock> lock(const Path&) override { return nullptr; }
  bool nameFits(const Path&, std::string_view) const override { return true; }
  std::string withoutCase(std::string_view name) const override { return std::string(name); }
  bool ignoresCase(const Path&) const override { return false; }
  void flushAll(const Path&) override {}
  void removeStaleTemporaryFiles(const Path&) override {}

 private:
  std::string content_;
};

}  // namespace kova
