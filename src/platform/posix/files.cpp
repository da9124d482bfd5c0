// SPDX-License-Identifier: MIT
#include <dirent.h>
#include <linux/magic.h>
#include <sys/file.h>
#include <sys/vfs.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <thread>

#include "platform/machine.h"
#include "platform/native_files.h"
#include "platform/posix/permissions.h"

namespace kova {

Handle::~Handle() {
  if (open()) ::close(native_);
}

namespace native {

namespace {

constexpr int lockAttempts = 300;

// File systems that can share the bytes of two files do so; false where that is not possible.
bool shareBytes(const Handle& from, const Handle& to, off_t size) {
  while (size > 0) {
    const auto count = uninterrupted(::copy_file_range, from.get(), nullptr, to.get(), nullptr,
                                     static_cast<std::size_t>(size), 0U);
    if (count <= 0) return false;
    size -= count;
  }
  return true;
}

void copyBytes(const Handle& from, const Handle& to, off_t size) {
  if (size > static_cast<off_t>(readAhead) && shareBytes(from, to, size)) return;
  std::string buffer(std::min(static_cast<std::size_t>(size) + 1, readAhead), '\0');
  off_t copied = 0;
  while (const std::size_t count = readSome(from, buffer.data(), buffer.size())) {
    write(to, {buffer.data(), count});
    copied += static_cast<off_t>(count);
    // There was room for more than that.
    if (copied == size && count < buffer.size()) return;
  }
}

// Bytes, times and permissions of `from`.
void fillCopy(const Handle& from, const Handle& to) {
  const struct stat state = stateOf(from);
  copyBytes(from, to, state.st_size);
  keepPermissionsOrFewer(permissionsOf(state, from), to);
  keepTimes(state, to);
}

// Runs `visit` for each entry of the folder, which is open as the number.
template <class Visit>
void forEachEntry(const Path& folder, Visit visit) {
  const auto close = [](DIR* open) { ::closedir(open); };
  const std::unique_ptr<DIR, decltype(close)> entries(::opendir(folder.native.c_str()), close);
  if (!entries) fail(errno);
  errno = 0;
  while (const dirent* entry = ::readdir(entries.get())) {
    visit(::dirfd(entries.get()), *entry);
    errno = 0;
  }
  if (errno != 0) fail(errno);
}

bool isPlainFile(int folder, const dirent& entry) {
  if (entry.d_type == DT_REG) return true;
  if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN) return false;
  struct stat state {};
  if (uninterrupted(::fstatat, folder, entry.d_name, &state, 0) == 0) {
    return S_ISREG(state.st_mode);
  }
  // A link may lead round in a circle, or to where this account may not go.
  if (!meansAbsent(errno) && errno != ELOOP && errno != EACCES) fail(errno);
  return false;
}

// Gives a file without a name its first one, `name`; false if there is an entry of that name or if
// this system or account can't do so.
bool giveName(const Handle& file, const std::string& name) {
  if (::linkat(file.get(), "", AT_FDCWD, name.c_str(), AT_EMPTY_PATH) == 0) return true;
  if (errno == EEXIST) return false;
  const std::string number = "/proc/self/fd/" + std::to_string(file.get());
  return ::linkat(AT_FDCWD, number.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0;
}

// A copy that has no name until it is whole, so that it takes neither a temporary name nor a lock
// and a killed run leaves nothing of it. False if that is not possible here or if `to` is taken.
bool copyWithoutTemporaryName(const Path& from, const Path& to) {
  const Source source = openPlainFile(from);
  // Nobody else can open it, so that it may have the mode of the source from the start.
  const mode_t mode = stateOf(source.file).st_mode & 0777U;
  constexpr int flags = O_TMPFILE | O_RDWR | O_CLOEXEC;
  const Handle copy(::open(to.parent().native.c_str(), flags, mode));
  if (!copy.open()) return false;
  fillCopy(source.file, copy);
  return giveName(copy, to.native);
}

Handle openFolder(const Path& folder) {
  constexpr int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
  return Handle(uninterrupted(::open, folder.native.c_str(), flags));
}

// Without a name: the folder in which the process stands.
Handle openParent(const Path& folder) {
  return openFolder(folder.native.empty() ? Path{"."} : folder);
}

// What this account can't read it has not written either.
void flushIfReadable(const Path& file) {
  constexpr int flags = O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY;
  const Handle open(uninterrupted(::open, file.native.c_str(), flags));
  if (open.open()) checked(::fsync, open.get());
  if (!open.open() && errno != EACCES && errno != ENOENT) fail(errno);
}

// One flush for all tells nothing to the program behind a FUSE mount, and succeeds all the same.
bool hasFlushForAll(const Handle& folder) {
  struct statfs system {};
  return ::fstatfs(folder.get(), &system) == 0 && system.f_type != FUSE_SUPER_MAGIC;
}

// EINVAL: a file system on which folders need no flush of their own.
void flushFolder(const Handle& folder) {
  if (uninterrupted(::fsync, folder.get()) != 0 && errno != EINVAL) fail(errno);
}

// Also sets the mask for an instant, which no other thread sees: there is none yet.
mode_t newFileMode() {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return 0666U & ~mask;
}

}  // namespace

std::optional<FileState> state(const Path& file) {
  const auto state = stateOf(file.native);
  return state && S_ISREG(state->st_mode) ? std::optional(asFileState(*state)) : std::nullopt;
}

bool isFolder(const Path& path) {
  const auto state = stateOf(path.native);
  return state && S_ISDIR(state->st_mode);
}

// Does not wait for the other end of a pipe, nor make a terminal its own.
Source openPlainFile(const Path& file) {
  constexpr int flags = O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY;
  Handle open(checked(::open, file.native.c_str(), flags));
  const struct stat state = stateOf(open);
  if (!S_ISREG(state.st_mode)) failAsNoPlainFile(state.st_mode);
  return {std::move(open), static_cast<std::uint64_t>(state.st_size)};
}

std::size_t readSome(const Handle& file, char* into, std::size_t size) {
  return static_cast<std::size_t>(checked(::read, file.get(), into, size));
}

void write(const Handle& file, std::string_view content) {
  while (!content.empty()) {
    const auto written = checked(::write, file.get(), content.data(), content.size());
    if (written == 0) fail(ENOSPC);
    content.remove_prefix(static_cast<std::size_t>(written));
  }
}

void flush(const Handle& file) {
  checked(::fsync, file.get());
}

void remove(const Path& file) {
  checked(::unlink, file.native.c_str());
}

void copy(const Path& from, const Path& to) {
  if (copyWithoutTemporaryName(from, to)) return;
  const auto copy = temporaryCopy(from, to);
  if (stateOfEntry(to.native)) flush(copy->file());
  copy->replace(to);
}

void fillCopy(const Path& /*from*/, const Source& source, const TemporaryFile& copy) {
  fillCopy(source.file, copy.file());
}

void createFolder(const Path& folder, const Path& parent) {
  checked(::mkdir, folder.native.c_str(), 0777U);
  if (const Handle names = openParent(parent); names.open()) return flushFolder(names);
  // Whoever may add to a folder may not always read it.
  if (errno != EACCES) fail(errno);
  flushAll(folder);
}

std::vector<std::string> plainFiles(const Path& folder) {
  std::vector<std::string> names;
  forEachEntry(folder, [&](int number, const dirent& entry) {
    if (entry.d_name[0] != '.' && isPlainFile(number, entry)) names.emplace_back(entry.d_name);
  });
  std::sort(names.begin(), names.end());
  return names;
}

void forEachName(const Path& folder, const std::function<void(const std::string&)>& action) {
  forEachEntry(folder, [&](int /*number*/, const dirent& entry) { action(entry.d_name); });
}

// The folder itself is what is locked, so that nothing is left behind however the program ends.
std::optional<Handle> lock(const Path& folder) {
  constexpr std::chrono::milliseconds pause(10);
  Handle names = openFolder(folder);
  for (int attempt = 0; attempt < lockAttempts; ++attempt) {
    if (::flock(names.get(), LOCK_EX | LOCK_NB) == 0) return names;
    if (errno != EWOULDBLOCK && errno != EINTR) return names;
    std::this_thread::sleep_for(pause);
  }
  return std::nullopt;
}

void flushNames(const Path& folder) {
  const Handle names = openParent(folder);
  if (!names.open()) fail(errno);
  flushFolder(names);
}

void flushAll(const Path& folder) {
  const Handle names = openFolder(folder);
  if (!names.open()) fail(errno);
  if (hasFlushForAll(names)) {
    if (uninterrupted(::syncfs, names.get()) == 0) return;
    if (!isNotPossibleHere(errno)) fail(errno);
  }
  for (const auto& name : plainFiles(folder)) flushIfReadable(folder / name);
  flushFolder(names);
}

}  // namespace native

std::unique_ptr<FileSystem> realFileSystem(const CodePage& codePage) {
  // A limit on the size of files is the failure of a write, not the end of the program.
  static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
  return native::fileSystem(codePage, native::newFileMode());
}

}  // namespace kova
