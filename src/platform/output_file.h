// SPDX-License-Identifier: MIT
// The one way in which content reaches a folder: written completely under a temporary name, then
// renamed.
#pragma once

#include "platform/file_system.h"
#include "platform/handle.h"

namespace kova {

/// The entry of the name is certainly `file` itself.
bool isCertainly(const Handle& file, const Path& name);

/// An empty file under a temporary name, made by this run and kept from other wizards, which would
/// take it for a stale one. It goes with the object unless it has been renamed.
class TemporaryFile {
 public:
  /// In `folder`, named after `leaf`.
  TemporaryFile(const Path& folder, std::string_view leaf);
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile();

  const Handle& file() const { return file_; }
  const Path& name() const { return name_; }
  /// Renames the file to `target`, which it replaces.
  void replace(const Path& target);
  /// Renames the file to `target`; false if there is an entry of that name.
  bool takeFreeName(const Path& target);

 private:
  // Who may write the folder may have put another file there.
  void checkName() const;

  Path name_;
  Handle file_;
  bool renamed_ = false;
};

/// A copy of `from` that will be `to` and has its temporary name still.
std::unique_ptr<TemporaryFile> temporaryCopy(const Path& from, const Path& to);

/// Who may do what with a file that did not exist before, where its folder does not tell.
using NewFileMode = unsigned;
/// When the temporary file of a new content is made.
enum class Made { atOnce, onceItIsNeeded };
/// New content for `file`.
std::unique_ptr<OutputFile> openOutputFile(const Path& file, NewFileMode newFileMode, Made made);

}  // namespace kova
