// SPDX-License-Identifier: MIT
// The one gate through which content reaches a folder: written whole under a hidden name, then
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

/// An empty file under a hidden name, locked against other wizards. What a killed run has left
/// under that name is used again. It goes with the object unless it has taken a place.
class HiddenFile {
 public:
  /// In `folder`, named after `leaf`.
  HiddenFile(const Path& folder, std::string_view leaf);
  HiddenFile(const HiddenFile&) = delete;
  HiddenFile& operator=(const HiddenFile&) = delete;
  ~HiddenFile();

  const Descriptor& descriptor() const { return descriptor_; }
  /// Where it stands.
  std::string path() const { return name(number_); }
  /// Renames the file to `target`, which it replaces.
  void takePlaceOf(const std::string& target);
  /// Renames the file to `target`; false if there is an entry of that name.
  bool takeFreePlace(const std::string& target);
  /// Removes what killed runs have left under the other names, unless another wizard uses it.
  void removeLeftovers() const;

 private:
  // 0, or the error for which the name can't be had.
  int take(int number);
  void close() const;
  std::string name(int number) const;

  std::string stem_;
  int number_ = 0;
  Descriptor descriptor_;
  bool gone_ = false;  ///< from its hidden name
};

/// Length of the longest name in `folder`, in bytes; nothing if there is no limit.
std::optional<std::size_t> nameLimit(const Path& folder);
/// Removes hidden files of any name that killed runs have left in `folder`.
void removeLeftovers(const Path& folder);
/// When the hidden file of a new content is made.
enum class Hidden { atOnce, onceItIsNeeded };
/// New content for `file`; `newFileMode` is for a file that does not exist yet.
std::unique_ptr<OutputFile> openOutputFile(const Path& file, mode_t newFileMode, Hidden made);

}  // namespace kova::posix
