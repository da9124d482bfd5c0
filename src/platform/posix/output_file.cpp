// SPDX-License-Identifier: MIT
// What becomes of a temporary file, and of the file whose place it takes.
#include "platform/output_file.h"

#include <sys/file.h>

#include <cstdio>
#include <filesystem>
#include <system_error>

#include "platform/native_files.h"
#include "platform/posix/permissions.h"

namespace kova::native {

const bool temporaryFilesArePrivate = true;

namespace {

// Some network mounts have no locks at all.
bool meansNoLocks(int error) {
  return error == ENOLCK || isNotPossibleHere(error);
}

std::optional<struct stat> plainFileState(const Path& name) {
  const auto state = stateOfEntry(name.native);
  if (state && !S_ISREG(state->st_mode)) failAsNoPlainFile(state->st_mode);
  return state;
}

void checkAccess(const std::string& name, int mode) {
  if (::faccessat(AT_FDCWD, name.c_str(), mode, AT_EACCESS) != 0) fail(errno);
}

// Closing a second descriptor tells what a close would tell, while the lock stays.
void checkClose(const Handle& file) {
  const int second = checked(::fcntl, file.get(), F_DUPFD_CLOEXEC, 0);
  if (::close(second) != 0 && errno != EINTR) fail(errno);
}

}  // namespace

Handle makeTemporaryFile(const Path& name) {
  const char* const path = name.native.c_str();
  constexpr int flags = O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW;
  Handle file(uninterrupted(::open, path, flags, 0600));
  if (!file.open() && errno == EEXIST) return file;
  if (!file.open()) fail(errno);
  if (uninterrupted(::flock, file.get(), LOCK_EX | LOCK_NB) != 0 && !meansNoLocks(errno)) {
    const int error = errno;
    ::unlink(path);
    if (error != EWOULDBLOCK) fail(error);
    return Handle();
  }
  // Another wizard may have taken it for a stale one before the lock was ours.
  return stateOf(file).st_nlink == 0 ? Handle() : std::move(file);
}

bool hasName(const Handle& file, const Path& name) {
  const struct stat opened = stateOf(file);
  const auto named = stateOfEntry(name.native);
  return named && opened.st_dev == named->st_dev && opened.st_ino == named->st_ino;
}

void rename(const Handle& file, const Path& from, const Path& to) {
  checkClose(file);
  checked(::rename, from.native.c_str(), to.native.c_str());
}

bool renameToFreeName(const Handle& file, const Path& from, const Path& to) {
  checkClose(file);
  const char* const name = from.native.c_str();
  constexpr unsigned replaceNothing = RENAME_NOREPLACE;
  if (::renameat2(AT_FDCWD, name, AT_FDCWD, to.native.c_str(), replaceNothing) == 0) return true;
  if (errno == EEXIST) return false;
  // Some file systems can't do both at once.
  if (!isNotPossibleHere(errno)) fail(errno);
  if (stateOfEntry(to.native)) return false;
  rename(file, from, to);
  return true;
}

void removeTemporaryFile(const Handle& /*file*/, const Path& name) {
  ::unlink(name.native.c_str());
}

// Somebody who has the file open holds it. Where there are no locks nobody can be told from a
// killed run, and everything stays.
void removeIfStale(const Path& temporary) {
  constexpr int flags = O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
  const Handle file(::open(temporary.native.c_str(), flags));
  if (!file.open() || ::flock(file.get(), LOCK_EX | LOCK_NB) != 0) return;
  if (!isCertainly(file, temporary)) return;
  const struct stat state = stateOf(file);
  if (!S_ISREG(state.st_mode) || state.st_nlink != 1) return;
  if (state.st_uid == ::geteuid()) ::unlink(temporary.native.c_str());
}

Path withoutLink(const Path& name) {
  const auto state = stateOfEntry(name.native);
  if (!state || !S_ISLNK(state->st_mode)) return name;
  std::error_code error;
  const auto target = std::filesystem::canonical(name.native, error);
  if (error == std::errc::no_such_file_or_directory) {
    throw Failure("The link points to a file that does not exist");
  }
  if (error) fail(error.value());
  return {target.native()};
}

void checkMayBeReplaced(const Path& target) {
  if (!plainFileState(target)) return;
  // A rename asks only the folder; a file that is protected against writing is not to be replaced.
  checkAccess(target.native, W_OK);
  const std::string folder = target.parent().native;
  checkAccess(folder.empty() ? "." : folder, W_OK | X_OK);
}

std::optional<FileState> targetState(const Path& target) {
  const auto state = plainFileState(target);
  return state ? std::optional(asFileState(*state)) : std::nullopt;
}

Handle openTarget(const Path& target) {
  constexpr int flags = O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
  return Handle(uninterrupted(::open, target.native.c_str(), flags));
}

void keepPermissions(const Path& target, NewFileMode newFileMode, const TemporaryFile& next) {
  const auto former = plainFileState(target);
  if (!former) return setNewMode(next.file(), newFileMode);
  // As long as the permissions are those of a temporary file, which this account may certainly
  // write.
  keepUserAttributes(target.native, next.file());
  keepPermissions(permissionsOf(*former, target.native), next.file());
}

}  // namespace kova::native
