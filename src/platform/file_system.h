// SPDX-License-Identifier: MIT
// What the wizard expects of the machine's files. Every failure is a Failure with a description.
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

/// Stands between the parts of a path in every text of the wizard that names a file.
#ifdef _WIN32
inline constexpr char pathSeparator = '\\';
/// What the machine takes for it in a text of the engineer's.
inline constexpr std::string_view pathSeparators = "\\/";
#else
inline constexpr char pathSeparator = '/';
inline constexpr std::string_view pathSeparators = "/";
#endif

/// What in a text keeps it from being the name of an entry of a folder: a sign that makes a path of
/// it, a word that names a device, a blank or dot that would be lost at its end. Empty if nothing
/// does.
std::string_view faultOfName(std::string_view text);

/// The text names one entry of a folder, and no other folder, device or part of a file.
inline bool namesPlainFile(std::string_view text) {
  const bool isStep = text == "." || text == "..";
  const bool isWhole = !text.empty() && text.find('\0') == std::string_view::npos;
  return isWhole && !isStep && faultOfName(text).empty();
}

/// Files that are larger are not read: 64 MiB.
inline constexpr std::size_t largestFile = std::size_t{64} << 20U;

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
  bool operator==(const Path&) const = default;
  bool operator<(const Path& other) const { return native < other.native; }
};

/// Tells one state of a file from another without reading it: two equal timestamps of one path mean
/// that nobody has written the file in between.
struct FileState {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::uint64_t bytes = 0;
  std::int64_t modified = 0;  ///< nanoseconds since 1970-01-01 00:00:00 UTC
  bool operator==(const FileState&) const = default;
};

/// A file that is being written. It stands under a hidden name beside its target until `close`;
/// an object that goes without `close` leaves the target as it was and no hidden file behind.
struct OutputFile {
  virtual ~OutputFile() = default;
  /// Appends all of `content`. Throws Failure, also for a short write.
  virtual void write(std::string_view content) = 0;
  /// Brings what was written so far to the disk, with the permissions of the file whose place it
  /// will take, unless that file holds the same bytes. May take seconds: a lock is had behind it,
  /// not ahead of it. Throws Failure.
  virtual void flush() = 0;
  /// Takes the target's place, after a flush of what is not flushed yet. The new name outlasts a
  /// loss of power once `flushAll` of its folder has been called. A target that holds the same
  /// bytes stays itself, with its time; whoever has written it may not have flushed it, so that it
  /// outlasts a loss of power once `flushAll` of the folder that it really lies in has been called.
  /// Throws Failure; the target is then as before.
  virtual void close() = 0;
};

/// Keeps other wizards from replacing files of a folder for as long as it lives. Holds nothing
/// where folders can't be locked.
struct FolderLock {
  virtual ~FolderLock() = default;
};

/// Files of one machine.
struct FileSystem {
  virtual ~FileSystem() = default;

  /// The machine's name for a path in the wizard's text. Throws Failure for the empty text and for
  /// one that holds a NUL, which would cut the name short.
  virtual Path path(std::string_view text) const = 0;
  /// A name in the machine's own form as the wizard's text; "?" for what that can't tell.
  virtual std::string text(std::string_view native) const = 0;
  /// A plain file, links followed; false for anything else. Throws Failure if that can't be told,
  /// as every check here: only what certainly does not exist is absent.
  virtual bool fileExists(const Path& file) const = 0;
  /// A folder, links followed; false for anything else.
  virtual bool folderExists(const Path& folder) const = 0;
  /// Whole content of a plain file. Throws Failure if there is none to read, if it is no plain file
  /// (a pipe never makes the wizard wait), if it is larger than 64 MiB or if memory runs out.
  virtual std::string read(const Path& file) const = 0;
  /// Starts a new content for `file`, which need not exist; its folder must. The permissions of an
  /// existing file stay, and a link keeps pointing to its file, which is what gets the content.
  virtual std::unique_ptr<OutputFile> create(const Path& file) = 0;
  /// As `create`, but nothing is made beside the target ahead of the flush, and nothing at all if
  /// the target holds the same bytes.
  virtual std::unique_ptr<OutputFile> createLate(const Path& file) { return create(file); }
  /// Makes one folder, whose name outlasts a loss of power; its parent must exist.
  virtual void createFolder(const Path& folder) = 0;
  /// Plain copy with bytes, permissions and modification time, whole or not there; replaces `to`.
  /// Nobody may read the copy who may not read `from`: permissions that can't be kept are lost. It
  /// outlasts a loss of power once `flushAll` has been called; a `to` that it replaces is not lost
  /// before.
  virtual void copy(const Path& from, const Path& to) = 0;
  /// As `copy`, but it replaces nothing and outlasts a loss of power at once. False if there is an
  /// entry `to` already.
  virtual bool copyAside(const Path& from, const Path& to) = 0;
  /// Removes the entry itself: of a link the link, not what it points to.
  virtual void remove(const Path& file) = 0;
  /// Names of the folder's plain files in the machine's own form, sorted by their bytes. Hidden
  /// entries and everything that is no regular file stay out; links to regular files come along,
  /// but for those that lead to where this account may not go.
  virtual std::vector<std::string> plainFiles(const Path& folder) const = 0;
  /// State of a file, links followed; nothing if there is no such file.
  virtual std::optional<FileState> state(const Path& file) const = 0;
  /// True if the folder's file system can hold a file of this name, in the machine's own form.
  virtual bool nameFits(const Path& folder, std::string_view name) const = 0;
  /// A name in the wizard's text as a disk that ignores case compares it.
  virtual std::string withoutCase(std::string_view name) const = 0;
  /// True if two names that differ only in case are one in `folder`, as a short-lived hidden file
  /// shows. Throws Failure if none can be made.
  virtual bool ignoresCase(const Path& folder) const = 0;
  /// Waits for another wizard that holds `folder`. Leaves no trace on disk. Null if the other one
  /// has held it for 3 seconds: then it is as if it were not there.
  virtual std::unique_ptr<FolderLock> lock(const Path& folder) = 0;
  /// Makes all that has been written to the file system of `folder` so far outlast a loss of power,
  /// names included; where that can't be had, the plain files of `folder` and its names.
  virtual void flushAll(const Path& folder) = 0;
  /// Removes the temporary files that killed wizards of this account have left in `folder`. What
  /// somebody holds, what belongs to another account and what can't be removed stays.
  virtual void removeStaleTemporaryFiles(const Path& folder) = 0;
};

/// There is such a file. One that can't be checked counts as there.
inline bool mayExist(const FileSystem& files, const Path& file) {
  try {
    return files.fileExists(file);
  } catch (const Failure&) {
    return true;
  }
}

/// `file` holds `content` afterwards, or, if this throws, what it held before.
inline void replace(FileSystem& files, const Path& file, std::string_view content) {
  const auto output = files.createLate(file);
  output->write(content);
  output->close();
}

}  // namespace kova
