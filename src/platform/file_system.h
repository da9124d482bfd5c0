// SPDX-License-Identifier: MIT
// What the wizard expects of the machine's files. Every failure is a Failure with a description.
#pragma once

#include <compare>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/failure.h"

namespace kova {

/// Stands between the parts of a path in every text of the wizard that names a file.
#ifdef _WIN32
inline constexpr char pathSeparator = '\\';
#else
inline constexpr char pathSeparator = '/';
#endif

/// Name of a file or folder in the machine's own form, as its calls take it.
struct Path {
  std::string native;

  /// What stands behind the last separator.
  std::string leaf() const { return native.substr(native.rfind(pathSeparator) + 1); }
  /// What stands up to it: the folder, its separator included, or nothing if there is none.
  Path parent() const { return {native.substr(0, native.rfind(pathSeparator) + 1)}; }
  /// An entry of this folder.
  Path operator/(std::string_view name) const {
    Path entry = *this;
    if (!native.empty() && native.back() != pathSeparator) entry.native += pathSeparator;
    entry.native += name;
    return entry;
  }
  auto operator<=>(const Path&) const = default;
};

/// Tells one state of a file from another without reading it: two equal stamps of one path mean
/// that nobody has written the file in between.
struct FileStamp {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::uint64_t bytes = 0;
  std::int64_t modified = 0;  ///< nanoseconds since 1970-01-01 00:00:00 UTC
  bool operator==(const FileStamp&) const = default;
};

/// A file that is being written. It stands under a hidden name beside its target until `close`;
/// an object that goes without `close` leaves the target as it was and no hidden file behind.
struct OutputFile {
  virtual ~OutputFile() = default;
  /// Appends all of `content`. Throws Failure, also for a short write.
  virtual void write(std::string_view content) = 0;
  /// Flushes to the disk and takes the target's place. Throws Failure; the target is then as
  /// before.
  virtual void close() = 0;
};

/// Keeps other wizards from replacing files of a folder for as long as it lives.
struct FolderLock {
  virtual ~FolderLock() = default;
};

/// Files of one machine.
struct FileSystem {
  virtual ~FileSystem() = default;

  /// The machine's name for a path in the wizard's text. Throws Failure for the empty text and for
  /// one that holds a NUL, which would cut the name short.
  virtual Path path(std::string_view text) const = 0;
  /// A plain file, links followed; false for anything else and for what can't be looked at.
  virtual bool fileExists(const Path& file) const = 0;
  /// A folder, links followed; false for anything else and for what can't be looked at.
  virtual bool folderExists(const Path& folder) const = 0;
  /// Whole content of a plain file. Throws Failure if there is none to read, if it is no plain file
  /// (a pipe never makes the wizard wait) or if it is larger than 256 MiB.
  virtual std::string read(const Path& file) const = 0;
  /// Starts a new content for `file`, which need not exist; its folder must. The permissions of an
  /// existing file stay, and a link keeps pointing to its file, which is what gets the content.
  virtual std::unique_ptr<OutputFile> create(const Path& file) = 0;
  /// Makes one folder; its parent must exist.
  virtual void createFolder(const Path& folder) = 0;
  /// Plain copy with bytes, permissions and modification time, whole or not there; replaces `to`.
  virtual void copy(const Path& from, const Path& to) = 0;
  /// Removes the entry itself: of a link the link, not what it points to.
  virtual void remove(const Path& file) = 0;
  /// Names of the folder's plain files in the machine's own form, sorted by their bytes. Hidden
  /// entries and everything that is no regular file stay out; links to regular files come along.
  virtual std::vector<std::string> plainFiles(const Path& folder) const = 0;
  /// State of a file, links followed; nothing if there is no such file.
  virtual std::optional<FileStamp> stamp(const Path& file) const = 0;
  /// Waits a few seconds at most for another wizard that holds `folder`. Leaves no trace on disk.
  /// Null where the lock can't be had: then it is as if the other wizard were not there.
  virtual std::unique_ptr<FolderLock> lock(const Path& folder) = 0;
  /// Makes the names in `folder` outlast a loss of power.
  virtual void flushFolder(const Path& folder) = 0;
};

/// `file` holds `content` afterwards, or, if this throws, what it held before.
inline void replace(FileSystem& files, const Path& file, std::string_view content) {
  const auto output = files.create(file);
  output->write(content);
  output->close();
}

}  // namespace kova
