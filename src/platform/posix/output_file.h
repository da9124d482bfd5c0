// SPDX-License-Identifier: MIT
// The one gate through which content reaches a folder: written whole under a temporary name, then
// renamed.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/file_system.h"
#include "platform/posix/calls.h"

namespace kova::posix {

/// An empty file under a temporary name, made by this run and locked against other wizards, which
/// would take it for a stale one. It goes with the object unless it has taken a place.
class HiddenFile {
 public:
  /// In `folder`, named after `leaf`.
  HiddenFile(const Path& folder, std::string_view leaf);
  HiddenFile(const HiddenFile&) = delete;
  HiddenFile& operator=(const HiddenFile&) = delete;
  ~HiddenFile();

  const Descriptor& descriptor() const { return descriptor_; }
  /// Its temporary name.
  const std::string& path() const { return path_; }
  /// Renames the file to `target`, which it replaces.
  void takePlaceOf(const std::string& target);
  /// Renames the file to `target`; false if there is an entry of that name.
  bool takeFreePlace(const std::string& target);

 private:
  // False if another name is to be tried.
  bool make();
  void close() const;

  std::string path_;
  Descriptor descriptor_;
  bool gone_ = false;  ///< from its hidden name
};

/// Length of the longest name in `folder`, in bytes; nothing if there is no limit.
std::optional<std::size_t> nameLimit(const Path& folder);
/// Removes the temporary files that killed runs of this account have left in `folder`.
void removeStaleTemporaryFiles(const Path& folder);
/// When the hidden file of a new content is made.
enum class Hidden { atOnce, onceItIsNeeded };
/// New content for `file`; `newFileMode` is for a file that does not exist yet.
std::unique_ptr<OutputFile> openOutputFile(const Path& file, mode_t newFileMode, Hidden made);

}  // namespace kova::posix
