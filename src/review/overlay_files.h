// SPDX-License-Identifier: MIT
// An overlay over the file system: reads pass through, writes stay in memory.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file_system.h"

namespace kova {

/// Reads from the files below whatever was not written here, and never changes them. A link counts
/// as a file of its own.
class OverlayFiles : public FileSystem {
 public:
  /// `below` outlives this.
  explicit OverlayFiles(const FileSystem& below) : below_(below) {}

  /// Files written here and not removed since, in the order of their last write.
  std::vector<Path> written() const;
  /// Files of the file system below that were removed here.
  std::vector<Path> removed() const;

  Path path(std::string_view text) const override { return below_.path(text); }
  std::string text(std::string_view native) const override { return below_.text(native); }
  bool fileExists(const Path& file) const override;
  bool folderExists(const Path& folder) const override;
  std::string read(const Path& file) const override;
  std::unique_ptr<OutputFile> create(const Path& file) override;
  void createFolder(const Path& folder) override;
  void copy(const Path& from, const Path& to) override;
  bool copyAside(const Path& from, const Path& to) override;
  void remove(const Path& file) override;
  std::vector<std::string> plainFiles(const Path& folder) const override;
  std::optional<FileState> state(const Path& file) const override;
  bool nameFits(const Path& folder, std::string_view name) const override;
  std::string withoutCase(std::string_view name) const override { return below_.withoutCase(name); }
  bool ignoresCase(const Path& folder) const override;
  /// Succeeds at once: nobody else sees these files.
  std::unique_ptr<FolderLock> lock(const Path& folder) override;
  void flushAll(const Path&) override {}
  void removeStaleTemporaryFiles(const Path&) override {}

 private:
  struct Remembered {
    std::optional<std::string> content;  ///< nothing if the file was removed
    std::int64_t change = 0;             ///< number of the last change
  };
  class Output;

  void remember(const Path& file, std::optional<std::string> content);
  const Remembered* find(const Path& file) const;
  /// The folder, or its nearest parent that exists below.
  Path folderBelow(Path folder) const;

  const FileSystem& below_;
  std::map<Path, Remembered> files_;
  std::set<Path> folders_;  ///< created here
  Path lastFolder_;         ///< of the last created file
  std::int64_t changes_ = 0;
};

}  // namespace kova
