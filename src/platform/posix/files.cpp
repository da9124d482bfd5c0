// SPDX-License-Identifier: MIT
#include <dirent.h>
#include <linux/magic.h>
#include <sys/file.h>
#include <sys/vfs.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <new>
#include <thread>

#include "platform/machine.h"
#include "platform/posix/output_file.h"
#include "platform/posix/permissions.h"
#include "platform/read_file.h"

namespace kova {

namespace {

using posix::checked;
using posix::Descriptor;
using posix::fail;

constexpr int lockAttempts = 300;

// Does not wait for the other end of a pipe, nor make a terminal its own.
Descriptor openPlainFile(const std::string& name, struct stat& state) {
  constexpr int flags = O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY;
  Descriptor file(checked(::open, name.c_str(), flags));
  checked(::fstat, file.number(), &state);
  if (!S_ISREG(state.st_mode)) posix::failAsNoPlainFile(state.st_mode);
  return file;
}

bool hasType(const Path& path, mode_t type) {
  const auto state = posix::stateOf(path.native);
  return state && (state->st_mode & S_IFMT) == type;
}

std::size_t readSome(const Descriptor& file, char* into, std::size_t size) {
  return static_cast<std::size_t>(checked(::read, file.number(), into, size));
}

// File systems that can share the bytes of two files do so; false where that is not possible.
bool shareBytes(const Descriptor& from, const Descriptor& to, off_t size) {
  while (size > 0) {
    const auto count = posix::uninterrupted(::copy_file_range, from.number(), nullptr, to.number(),
                                            nullptr, static_cast<std::size_t>(size), 0U);
    if (count <= 0) return false;
    size -= count;
  }
  return true;
}

void copyBytes(const Descriptor& from, const Descriptor& to, off_t size) {
  if (size > static_cast<off_t>(readAhead) && shareBytes(from, to, size)) return;
  std::string buffer(std::min(static_cast<std::size_t>(size) + 1, readAhead), '\0');
  off_t copied = 0;
  while (const std::size_t count = readSome(from, buffer.data(), buffer.size())) {
    posix::writeAll(to, {buffer.data(), count});
    copied += static_cast<off_t>(count);
    // There was room for more than that.
    if (copied == size && count < buffer.size()) return;
  }
}

// Bytes, times and permissions of `from`, whose state is known.
void fillCopy(const Descriptor& from, const struct stat& state, const Descriptor& to) {
  copyBytes(from, to, state.st_size);
  posix::keepPermissionsOrFewer(posix::permissionsOf(state, from), to);
  posix::keepTimes(state, to);
}

bool isPlainFile(int folder, const dirent& entry) {
  if (entry.d_type == DT_REG) return true;
  if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN) return false;
  struct stat state {};
  if (posix::uninterrupted(::fstatat, folder, entry.d_name, &state, 0) == 0) {
    return S_ISREG(state.st_mode);
  }
  // A link may lead round in a circle, or to where this account may not go.
  if (!posix::meansAbsent(errno) && errno != ELOOP && errno != EACCES) fail(errno);
  return false;
}

std::string readWhole(const Path& file) {
  struct stat state {};
  const Descriptor source = openPlainFile(file.native, state);
  return allOf(static_cast<std::uint64_t>(state.st_size),
               [&](char* into, std::size_t size) { return readSome(source, into, size); });
}

// A copy that has its temporary name still.
std::unique_ptr<posix::HiddenFile> hiddenCopy(const Path& from, const Path& to) {
  struct stat state {};
  const Descriptor source = openPlainFile(from.native, state);
  auto hidden = std::make_unique<posix::HiddenFile>(to.parent(), from.leaf());
  fillCopy(source, state, hidden->descriptor());
  return hidden;
}

// Gives a file without a name its first one, `name`; false if there is an entry of that name or if
// this system or account can't do so.
bool giveName(const Descriptor& file, const std::string& name) {
  if (::linkat(file.number(), "", AT_FDCWD, name.c_str(), AT_EMPTY_PATH) == 0) return true;
  if (errno == EEXIST) return false;
  const std::string number = "/proc/self/fd/" + std::to_string(file.number());
  return ::linkat(AT_FDCWD, number.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0;
}

// A copy that has no name until it is whole, so that it takes neither a hidden name nor a lock and
// a killed run leaves nothing of it. False if that is not possible here or if `to` is taken.
bool copyWithoutHiddenName(const Path& from, const Path& to) {
  struct stat state {};
  const Descriptor source = openPlainFile(from.native, state);
  // Nobody else can open it, so that it may have the mode of the source from the start.
  constexpr int flags = O_TMPFILE | O_RDWR | O_CLOEXEC;
  const Descriptor copy(::open(to.parent().native.c_str(), flags, state.st_mode & 0777U));
  if (!copy.open()) return false;
  fillCopy(source, state, copy);
  return giveName(copy, to.native);
}

Descriptor openFolder(const Path& folder) {
  constexpr int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
  return Descriptor(posix::uninterrupted(::open, folder.native.c_str(), flags));
}

Path parentOf(const Path& folder) {
  const auto end = folder.native.find_last_not_of(pathSeparator) + 1;
  const Path parent = Path{folder.native.substr(0, end)}.parent();
  return parent.native.empty() ? Path{"."} : parent;
}

// What this account can't read it has not written either.
void flushIfReadable(const Path& file) {
  constexpr int flags = O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY;
  const Descriptor open(posix::uninterrupted(::open, file.native.c_str(), flags));
  if (open.open()) checked(::fsync, open.number());
  if (!open.open() && errno != EACCES && errno != ENOENT) fail(errno);
}

bool isNotPossibleHere(int error) {
  return error == EINVAL || error == ENOSYS || error == ENOTSUP;
}

// One flush for all tells nothing to the program behind a FUSE mount, and succeeds all the same.
bool hasFlushForAll(const Descriptor& folder) {
  struct statfs system {};
  return ::fstatfs(folder.number(), &system) == 0 && system.f_type != FUSE_SUPER_MAGIC;
}

// The folder itself is what is locked, so that nothing is left behind however the program ends.
class PosixFolderLock final : public FolderLock {
 public:
  explicit PosixFolderLock(Descriptor folder) : folder_(std::move(folder)) {}
  // False if somebody else holds it all the while.
  bool hold() const {
    constexpr std::chrono::milliseconds pause(10);
    for (int attempt = 0; attempt < lockAttempts; ++attempt) {
      if (::flock(folder_.number(), LOCK_EX | LOCK_NB) == 0) return true;
      if (errno != EWOULDBLOCK && errno != EINTR) return true;
      std::this_thread::sleep_for(pause);
    }
    return false;
  }

 private:
  Descriptor folder_;
};

// Also sets the mask for an instant, which no other thread sees: there is none yet.
mode_t newFileMode() {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return 0666U & ~mask;
}

class PosixFileSystem final : public FileSystem {
 public:
  explicit PosixFileSystem(const CodePage& codePage) : codePage_(codePage) {}

  Path path(std::string_view text) const override {
    if (text.empty()) throw Failure("The name is empty");
    if (text.find('\0') != std::string_view::npos) throw Failure("The name holds a NUL");
    return {codePage_.toNative(text)};
  }

  std::string text(std::string_view native) const override { return codePage_.fromNative(native); }

  bool fileExists(const Path& file) const override { return hasType(file, S_IFREG); }
  bool folderExists(const Path& folder) const override { return hasType(folder, S_IFDIR); }

  std::string read(const Path& file) const override {
    try {
      return readWhole(file);
    } catch (const std::bad_alloc&) {
      throw Failure("not enough memory");
    }
  }

  std::unique_ptr<OutputFile> create(const Path& file) override {
    return posix::openOutputFile(file, newFileMode_, posix::Hidden::atOnce);
  }

  std::unique_ptr<OutputFile> createLate(const Path& file) override {
    return posix::openOutputFile(file, newFileMode_, posix::Hidden::onceItIsNeeded);
  }

  void createFolder(const Path& folder) override {
    checked(::mkdir, folder.native.c_str(), 0777U);
    if (const Descriptor names = openFolder(parentOf(folder)); names.open()) return flush(names);
    // Whoever may add to a folder may not always read it.
    if (errno != EACCES) fail(errno);
    flushAll(folder);
  }

  void copy(const Path& from, const Path& to) override {
    if (copyWithoutHiddenName(from, to)) return;
    const auto hidden = hiddenCopy(from, to);
    const bool replaces = posix::stateOfEntry(to.native).has_value();
    if (replaces) checked(::fsync, hidden->descriptor().number());
    hidden->takePlaceOf(to.native);
  }

  bool copyAside(const Path& from, const Path& to) override {
    const auto hidden = hiddenCopy(from, to);
    checked(::fsync, hidden->descriptor().number());
    if (!hidden->takeFreePlace(to.native)) return false;
    const Descriptor names = openFolder(parentOf(to));
    if (!names.open()) fail(errno);
    flush(names);
    return true;
  }

  void remove(const Path& file) override { checked(::unlink, file.native.c_str()); }

  std::vector<std::string> plainFiles(const Path& folder) const override {
    const auto close = [](DIR* open) { ::closedir(open); };
    const std::unique_ptr<DIR, decltype(close)> entries(::opendir(folder.native.c_str()), close);
    if (!entries) fail(errno);
    std::vector<std::string> names;
    errno = 0;
    while (const dirent* entry = ::readdir(entries.get())) {
      if (entry->d_name[0] != '.' && isPlainFile(::dirfd(entries.get()), *entry)) {
        names.emplace_back(entry->d_name);
      }
      errno = 0;
    }
    if (errno != 0) fail(errno);
    std::sort(names.begin(), names.end());
    return names;
  }

  std::optional<FileState> state(const Path& file) const override {
    const auto state = posix::stateOf(file.native);
    if (!state || !S_ISREG(state->st_mode)) return std::nullopt;
    constexpr std::int64_t second = 1'000'000'000;
    return FileState{state->st_dev, state->st_ino, static_cast<std::uint64_t>(state->st_size),
                     state->st_mtim.tv_sec * second + state->st_mtim.tv_nsec};
  }

  std::unique_ptr<FolderLock> lock(const Path& folder) override {
    auto lock = std::make_unique<PosixFolderLock>(openFolder(folder));
    return lock->hold() ? std::move(lock) : nullptr;
  }

  bool nameFits(const Path& folder, std::string_view name) const override {
    const auto limit = posix::nameLimit(folder);
    if (name.empty() || (limit && name.size() > *limit)) return false;
    struct stat state {};
    if (::lstat((folder / name).native.c_str(), &state) == 0) return true;
    // Some file systems count characters of their own and have more that a name must not hold.
    return errno != ENAMETOOLONG && errno != EINVAL && errno != EILSEQ;
  }

  std::string withoutCase(std::string_view name) const override {
    std::string capitals(name);
    for (char& letter : capitals) letter = codePage_.capital(letter);
    return capitals;
  }

  bool ignoresCase(const Path& folder) const override {
    const posix::HiddenFile hidden(folder, "case");
    const Path other = folder / withoutCase(Path{hidden.path()}.leaf());
    struct stat made {};
    checked(::fstat, hidden.descriptor().number(), &made);
    const auto seen = posix::stateOfEntry(other.native);
    return seen && seen->st_dev == made.st_dev && seen->st_ino == made.st_ino;
  }

  void flushAll(const Path& folder) override {
    const Descriptor names = openFolder(folder);
    if (!names.open()) fail(errno);
    if (hasFlushForAll(names)) {
      if (posix::uninterrupted(::syncfs, names.number()) == 0) return;
      if (!isNotPossibleHere(errno)) fail(errno);
    }
    for (const auto& name : plainFiles(folder)) flushIfReadable(folder / name);
    flush(names);
  }

  void removeStaleTemporaryFiles(const Path& folder) override {
    posix::removeStaleTemporaryFiles(folder);
  }

 private:
  // EINVAL: a file system on which folders need no flush of their own.
  static void flush(const Descriptor& folder) {
    if (posix::uninterrupted(::fsync, folder.number()) != 0 && errno != EINVAL) fail(errno);
  }

  const CodePage& codePage_;
  mode_t newFileMode_ = newFileMode();
};

}  // namespace

std::string_view faultOfName(std::string_view text) {
  return text.find(pathSeparator) == std::string_view::npos ? std::string_view() : pathSeparators;
}

std::unique_ptr<FileSystem> realFileSystem(const CodePage& codePage) {
  // A limit on the size of files is the failure of a write, not the end of the program.
  static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
  return std::make_unique<PosixFileSystem>(codePage);
}

}  // namespace kova
