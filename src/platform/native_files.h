// SPDX-License-Identifier: MIT
// What each system does with files in its own way; posix/ and windows/ hold the definitions. Every
// failure is a Failure.
#pragma once

#include <functional>

#include "platform/code_page.h"
#include "platform/handle.h"
#include "platform/output_file.h"

namespace kova::native {

/// So many bytes are asked for at a time where the size of a file does not tell.
inline constexpr std::size_t readAhead = std::size_t{64} << 10U;

/// A plain file that is being read, and its size.
struct Source {
  Handle file;
  std::uint64_t bytes = 0;
};

/// See `FileSystem::state`.
std::optional<FileState> state(const Path& file);
bool isFolder(const Path& path);
Source openPlainFile(const Path& file);
/// Number of the bytes that were read; 0 at the end.
std::size_t readSome(const Handle& file, char* into, std::size_t size);
/// All bytes that are left. Throws Failure if there are more than 64 MiB.
std::string contentOf(const Source& source);
/// Appends all of `content`.
void write(const Handle& file, std::string_view content);
void flush(const Handle& file);
void remove(const Path& file);
void copy(const Path& from, const Path& to);
void createFolder(const Path& folder, const Path& parent);
/// See `FileSystem::plainFiles`.
std::vector<std::string> plainFiles(const Path& folder);
void forEachName(const Path& folder, const std::function<void(const std::string&)>& action);
bool nameFits(const Path& folder, std::string_view name);
/// Not open where folders can't be locked; nothing if somebody else has held it all the while.
std::optional<Handle> lock(const Path& folder);
/// Makes the names in a folder, or where the process stands if it is empty, outlast a loss of
/// power.
void flushNames(const Path& folder);
void flushAll(const Path& folder);

/// Makes one folder for this account alone, unless there is an entry of that name.
void makePrivateFolder(const Path& folder);
/// Closes a folder of this account to others. Throws Failure for anything else, such as a link.
void checkIsPrivate(const Path& folder);
/// State of a plain file of this account; nothing if the entry is anything else.
std::optional<FileState> stateOfOwnFile(const Path& file);
/// There is an entry of this name, or it can't be told.
bool entryExists(const Path& name);
/// Renames an entry; what has the new name is replaced.
void replaceName(const Path& from, const Path& to);
/// A process has the file, which `makeTemporaryFile` made.
bool isHeld(const Path& file);

/// As much of the beginning of `leaf` as a temporary name in `folder` has room for.
std::string beginningOf(std::string_view leaf, const Path& folder);
std::uint64_t randomNumber();
/// A new file that other wizards take for no stale one as long as it is open. Not open if another
/// name is to be tried.
Handle makeTemporaryFile(const Path& name);
/// The entry of the name is `file` itself; throws if that can't be told.
bool hasName(const Handle& file, const Path& name);
/// Renames an open file; what has the new name is replaced.
void rename(const Handle& file, const Path& from, const Path& to);
/// False if there is an entry `to`.
bool renameToFreeName(const Handle& file, const Path& from, const Path& to);
/// What can't be removed stays.
void removeTemporaryFile(const Handle& file, const Path& name);
/// Removes a temporary file of this account that nobody has open.
void removeIfStale(const Path& temporary);
/// Gives a copy the bytes, permissions and times of `from`, which is open as `source`.
void fillCopy(const Path& from, const Source& source, const TemporaryFile& copy);

/// The file that a link leads to; the name itself if it is no link.
Path withoutLink(const Path& name);
/// Throws if there is something else than a file that this account may replace: a file that stays
/// itself asks nobody, but is to fail like one that changes.
void checkMayBeReplaced(const Path& target);
/// State of a file that is to be replaced; nothing if there is none.
std::optional<FileState> targetState(const Path& target);
/// Not open if it can't be read.
Handle openTarget(const Path& target);
/// Gives the next content of `target` the permissions that the file has, or those of a new one.
void keepPermissions(const Path& target, NewFileMode newFileMode, const TemporaryFile& next);
/// Nobody else may read a temporary file, so that it gets its permissions last.
extern const bool temporaryFilesArePrivate;

/// All of that in one.
std::unique_ptr<FileSystem> fileSystem(const CodePage& codePage, NewFileMode newFileMode);

}  // namespace kova::native
