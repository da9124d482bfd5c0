// SPDX-License-Identifier: MIT
// The machine's files. Every error is a Failure with a description.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/failure.h"

namespace kova {

/// Separates the parts of a path in the wizard's texts.
#ifdef _WIN32
inline constexpr char pathSeparator = '\\';
/// What the engineer may type for it.
inline constexpr std::string_view pathSeparators = "\\/";
#else
inline constexpr char pathSeparator = '/';
inline constexpr std::string_view pathSeparators = "/";
#endif

/// The part of a text that prevents it from being the name of a folder entry: a path separator, the
/// name of a device, a trailing space or dot. Empty if there is none.
std::string_view faultOfName(std::string_view text);

/// The text is the name of an entry of a folder: not a path, a device or a part of a file.
inline bool namesPlainFile(std::string_view text) {
  const bool isStep = text == "." || text == "..";
  const bool isWhole = !text.empty() && text.find('\0') == std::string_view::npos;
  return isWhole && !isStep && faultOfName(text).empty();
}

/// Larger files are not read: 64 MiB.
inline constexpr std::size_t largestFile = std::size_t{64} << 20U;

/// Native path of a file or folder, as the system calls expect it.
struct Path {
  std::string native;

  /// The part after the last separator.
  std::string leaf() const { return native.substr(native.rfind(pathSeparator) + 1); }
  /// The folder with its separator; empty if there is none.
  Path parent() const { return {native.substr(0, native.rfind(pathSeparator) + 1)}; }
  /// An entry of this folder.
  Path operator/(std::string_view name) const {
    Path entry = *this;
    if (!native.empty() && native.back() != pathSeparator) entry.native += pathSeparator;
    entry.native += name;
    return entry;
  }
  bool operator==(const Path&) const = default;
  bool operator<(const Path& other) const { return native < other.native; }
};

/// State of a file without its content: if it is the same at two times, nobody has written the file
/// in between.
struct FileState {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::uint64_t bytes = 0;
  std::int64_t modified = 0;  ///< nanoseconds since 1970-01-01 00:00:00 UTC
  bool operator==(const FileState&) const = default;
};

/// A file that is being written, under a hidden name in the folder of its target until `close`.
/// Destroyed without `close`, it leaves the target unchanged and no hidden file.
struct OutputFile {
  virtual ~OutputFile() = default;
  /// Appends all of `content`. Throws Failure, also for a short write.
  virtual void write(std::string_view content) = 0;
  /// Flushes what was written to the disk, with the permissions of the target, unless the target
  /// holds the same bytes. May take seconds: flush before taking a lock. Throws Failure.
  virtual void flush() = 0;
  /// Replaces the target, after a `flush` if necessary. The new name survives a loss of power after
  /// `flushAll` of its folder. A target that holds the same bytes stays unchanged, with its time.
  /// Its writer may not have flushed it, so it survives a loss of power only after `flushAll` of
  /// the folder that it is really in. Throws Failure and leaves the target unchanged.
  virtual void close() = 0;
};

/// Prevents other wizards from replacing files of a folder while it exists. Has no effect where
/// folders can't be locked.
struct FolderLock {
  virtual ~FolderLock() = default;
};

/// Files of one machine.
struct FileSystem {
  virtual ~FileSystem() = default;

  /// The native path for a text. Throws Failure for the empty text and for one with a NUL, which
  /// would truncate the path.
  virtual Path path(std::string_view text) const = 0;
  /// A native name as text; "?" for characters that the code page lacks.
  virtual std::string text(std::string_view native) const = 0;
  /// A plain file, links followed; false for anything else. Like every check here, throws Failure
  /// if the answer is unknown: only what certainly does not exist is absent.
  virtual bool fileExists(const Path& file) const = 0;
  /// A folder, links followed; false for anything else.
  virtual bool folderExists(const Path& folder) const = 0;
  /// Content of a plain file. Throws Failure if the file can't be read, is not a plain file (a pipe
  /// must not block the wizard), is larger than 64 MiB or does not fit into memory.
  virtual std::string read(const Path& file) const = 0;
  /// Starts new content for `file`, which need not exist; its folder must. An existing file keeps
  /// its permissions. A link is kept, and the file that it points to gets the content.
  virtual std::unique_ptr<OutputFile> create(const Path& file) = 0;
  /// As `create`, but makes the hidden file only at the flush, and none if the target holds the
  /// same bytes.
  virtual std::unique_ptr<OutputFile> createLate(const Path& file) { return create(file); }
  /// Makes one folder, which survives a loss of power; its parent must exist.
  virtual void createFolder(const Path& folder) = 0;
  /// Copies bytes, permissions and modification time, atomically; replaces `to`. Permissions that
  /// can't be kept are dropped, so that only readers of `from` can read the copy. The copy survives
  /// a loss of power after `flushAll`; until then a replaced `to` is not lost.
  virtual void copy(const Path& from, const Path& to) = 0;
  /// As `copy`, but replaces nothing, and the copy survives a loss of power at once. False if `to`
  /// already exists.
  virtual bool copyAside(const Path& from, const Path& to) = 0;
  /// Removes the entry. Of a link it removes the link, not its target.
  virtual void remove(const Path& file) = 0;
  /// Native names of the folder's regular files, sorted by their bytes. Includes links to regular
  /// files, except links to where this account has no access. Excludes hidden files.
  virtual std::vector<std::string> plainFiles(const Path& folder) const = 0;
  /// State of a file, links followed; nothing if it does not exist.
  virtual std::optional<FileState> state(const Path& file) const = 0;
  /// True if the folder's file system can hold a file of this native name.
  virtual bool nameFits(const Path& folder, std::string_view name) const = 0;
  /// A name, as text, in the case folding of a disk that ignores case.
  virtual std::string withoutCase(std::string_view name) const = 0;
  /// True if names that differ only in case are the same in `folder`. Tested by a temporary hidden
  /// file; throws Failure if it can't be made.
  virtual bool ignoresCase(const Path& folder) const = 0;
  /// Locks `folder`, without a trace on disk. Waits for another wizard that has locked it; null
  /// after 3 seconds.
  virtual std::unique_ptr<FolderLock> lock(const Path& folder) = 0;
  /// Flushes the file system of `folder`, names included, so that it survives a loss of power;
  /// where this is not possible, the plain files of `folder` and its names.
  virtual void flushAll(const Path& folder) = 0;
  /// Removes the temporary files that killed wizards of this account have left in `folder`. Keeps
  /// files that are in use, belong to another account or can't be removed.
  virtual void removeStaleTemporaryFiles(const Path& folder) = 0;
};

/// The file exists or can't be checked.
inline bool mayExist(const FileSystem& files, const Path& file) {
  try {
    return files.fileExists(file);
  } catch (const Failure&) {
    return true;
  }
}

/// Replaces the content of `file`. Throws Failure and leaves the file unchanged.
inline void replace(FileSystem& files, const Path& file, std::string_view content) {
  const auto output = files.createLate(file);
  output->write(content);
  output->close();
}

}  // namespace kova
