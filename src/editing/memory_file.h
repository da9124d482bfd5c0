// SPDX-License-Identifier: MIT
// A file in memory, for a row that is written and read back before it goes to the disk.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file_system.h"

namespace kova {

/// Files of which there is just one, whatever its name. Nothing here fails.
class MemoryFile : public FileSystem {
 public:
  MemoryFile() = default;
  explicit MemoryFile(std::string content) : content_(std::move(content)) {}

  const std::string& content() const { return content_; }

  Path path(std::string_view text) const override { return {std::string(text)}; }
  bool fileExists(const Path&) const override { return true; }
  bool folderExists(const Path&) const override { return true; }
  std::string read(const Path&) const override { return content_; }
  std::unique_ptr<OutputFile> create(const Path&) override {
    content_.clear();
    return std::make_unique<Output>(content_);
  }
  void createFolder(const Path&) override {}
  void copy(const Path&, const Path&) override {}
  bool copyAside(const Path&, const Path&) override { return true; }
  void remove(const Path&) override {}
  std::vector<std::string> plainFiles(const Path&) const override { return {}; }
  std::optional<FileStamp> stamp(const Path&) const override { return std::nullopt; }
  std::unique_ptr<FolderLock> lock(const Path&) override { return nullptr; }
  bool nameFits(const Path&, std::string_view) const override { return true; }
  bool ignoresCase(const Path&) const override { return false; }
  void flushFolder(const Path&) override {}
  void flushAll(const Path&) override {}
  void removeLeftovers(const Path&) override {}

 private:
  struct Output : OutputFile {
    explicit Output(std::string& target) : content(target) {}
    void write(std::string_view text) override { content += text; }
    void flush() override {}
    void close() override {}
    std::string& content;
  };

  std::string content_;
};

}  // namespace kova
