// SPDX-License-Identifier: MIT
#include "platform/state_folder.h"

#include <pwd.h>
#include <sys/file.h>

#include <cstdlib>

#include "platform/native_files.h"
#include "platform/posix/calls.h"

namespace kova {
namespace {

std::string homeOfAccount() {
  const char* home = std::getenv("HOME");
  if (home != nullptr && *home == '/') return home;
  const passwd* account = ::getpwuid(::getuid());
  return account == nullptr ? "" : account->pw_dir;
}

}  // namespace

Path stateHome() {
  const char* stateHome = std::getenv("XDG_STATE_HOME");
  // The standard tells programs to ignore relative paths.
  if (stateHome != nullptr && *stateHome == '/') return {stateHome};
  const std::string home = homeOfAccount();
  return home.empty() ? Path() : Path{home} / ".local/state";
}

namespace native {

void makePrivateFolder(const Path& folder) {
  if (::mkdir(folder.native.c_str(), 0700) != 0 && errno != EEXIST) fail(errno);
}

void checkIsPrivate(const Path& folder) {
  constexpr int flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
  const Handle open(checked(::open, folder.native.c_str(), flags));
  const struct stat state = stateOf(open);
  if (state.st_uid != ::geteuid()) throw Failure("It belongs to another account");
  if ((state.st_mode & 077U) != 0) checked(::fchmod, open.get(), 0700U);
}

std::optional<FileState> stateOfOwnFile(const Path& file) {
  const auto state = stateOfEntry(file.native);
  const bool isOwnFile = state && S_ISREG(state->st_mode) && state->st_uid == ::geteuid();
  return isOwnFile ? std::optional(asFileState(*state)) : std::nullopt;
}

bool entryExists(const Path& name) {
  struct stat state {};
  return ::lstat(name.native.c_str(), &state) == 0 || !meansAbsent(errno);
}

void replaceName(const Path& from, const Path& to) {
  checked(::rename, from.native.c_str(), to.native.c_str());
}

// Where there are no locks nobody holds anything.
bool isHeld(const Path& file) {
  constexpr int flags = O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC;
  const Handle open(::open(file.native.c_str(), flags));
  return open.open() && ::flock(open.get(), LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

}  // namespace native
}  // namespace kova
