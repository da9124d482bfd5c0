// SPDX-License-Identifier: MIT
#include "platform/posix/output_file.h"

#include <dirent.h>
#include <sys/file.h>
#include <sys/random.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <system_error>
#include <tuple>
#include <utility>

#include "platform/posix/permissions.h"
#include "platform/temporary_name.h"

namespace kova::posix {

namespace {

constexpr std::size_t usualNameLimit = 255;  // in bytes, or characters on some file systems

// The beginning of a long name, without half a character, which some file systems refuse.
std::string_view beginningOf(std::string_view leaf, std::size_t longest) {
  if (leaf.size() <= longest) return leaf;
  std::size_t end = longest;
  while (end > 0 && (static_cast<unsigned char>(leaf[end]) & 0xC0U) == 0x80U) --end;
  return leaf.substr(0, end);
}

std::string temporaryPath(const Path& folder, std::string_view leaf) {
  const std::size_t limit = nameLimit(folder).value_or(usualNameLimit);
  const std::size_t room = roomInTemporaryName(std::min(limit, usualNameLimit));
  std::uint64_t random = 0;
  const auto size = checked(::getrandom, &random, sizeof random, 0U);
  if (size != sizeof random) fail(EIO);
  return (folder / temporaryName(beginningOf(leaf, room), random)).native;
}

// State of an open file, if `name` is still its name for certain.
std::optional<struct stat> stateIfNamed(const Descriptor& file, const std::string& name) {
  struct stat opened {};
  struct stat named {};
  if (::fstat(file.number(), &opened) != 0 || ::lstat(name.c_str(), &named) != 0) {
    return std::nullopt;
  }
  if (opened.st_dev != named.st_dev || opened.st_ino != named.st_ino) return std::nullopt;
  return opened;
}

// Some network mounts have no locks at all.
bool meansNoLocks(int error) {
  return error == ENOLCK || error == ENOTSUP || error == ENOSYS || error == EINVAL;
}

std::optional<struct stat> plainFileState(const std::string& name) {
  const auto state = stateOfEntry(name);
  if (state && !S_ISREG(state->st_mode)) failAsNoPlainFile(state->st_mode);
  return state;
}

std::string withoutLink(const std::string& name) {
  const auto state = stateOfEntry(name);
  if (!state || !S_ISLNK(state->st_mode)) return name;
  std::error_code error;
  const auto target = std::filesystem::canonical(name, error);
  if (error == std::errc::no_such_file_or_directory) {
    throw Failure("The link points to a file that does not exist");
  }
  if (error) fail(error.value());
  return target.native();
}

void checkAccess(const std::string& name, int mode) {
  if (::faccessat(AT_FDCWD, name.c_str(), mode, AT_EACCESS) != 0) fail(errno);
}

// A rename asks only the folder; a file that is protected against writing is not to be replaced.
// A file that stays asks nobody, but is to fail like one that changes.
void checkMayBeReplaced(const Path& file) {
  checkAccess(file.native, W_OK);
  const std::string folder = file.parent().native;
  checkAccess(folder.empty() ? "." : folder, W_OK | X_OK);
}

// Somebody who has the file open holds it. Where there are no locks nobody can be told from a
// killed run, and everything stays.
void removeIfLeft(const std::string& hidden) {
  const Descriptor file(::open(hidden.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
  if (!file.open() || ::flock(file.number(), LOCK_EX | LOCK_NB) != 0) return;
  const auto state = stateIfNamed(file, hidden);
  if (!state || !S_ISREG(state->st_mode) || state->st_nlink != 1) return;
  if (state->st_uid == ::geteuid()) ::unlink(hidden.c_str());
}

bool isSameState(const std::optional<struct stat>& one, const std::optional<struct stat>& other) {
  const auto facts = [](const struct stat& state) {
    return std::tuple(state.st_dev, state.st_ino, state.st_size, state.st_mtim.tv_sec,
                      state.st_mtim.tv_nsec);
  };
  return one && other && facts(*one) == facts(*other);
}

// What can't be read holds something else.
bool holds(const std::string& name, std::string_view content) {
  constexpr int flags = O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
  const Descriptor file(uninterrupted(::open, name.c_str(), flags));
  if (!file.open()) return false;
  std::array<char, 16384> chunk;
  for (;;) {
    const auto count = uninterrupted(::read, file.number(), chunk.data(), chunk.size());
    if (count <= 0) return count == 0 && content.empty();
    const std::string_view read(chunk.data(), static_cast<std::size_t>(count));
    if (!content.starts_with(read)) return false;
    content.remove_prefix(read.size());
  }
}

class PosixOutputFile final : public OutputFile {
 public:
  PosixOutputFile(Path target, mode_t newFileMode, Hidden made)
      : target_(std::move(target)), newFileMode_(newFileMode) {
    if (made == Hidden::atOnce) hidden_.emplace(target_.parent(), target_.leaf());
  }

  void write(std::string_view content) override {
    flushed_ = false;
    content_ += content;
    if (hidden_) writeAll(hidden_->descriptor(), content);
  }

  void flush() override {
    former_ = plainFileState(target_.native);
    targetStays_ = former_ && static_cast<std::size_t>(former_->st_size) == content_.size() &&
                   holds(target_.native, content_);
    if (!targetStays_) {
      hide();
      takePermissions();
      checked(::fsync, hidden_->descriptor().number());
    }
    flushed_ = true;
  }

  void close() override {
    if (targetStays_ && !isSameState(former_, plainFileState(target_.native))) flushed_ = false;
    if (!flushed_) flush();
    if (!targetStays_) hidden_->takePlaceOf(target_.native);
    hidden_.reset();
  }

 private:
  void hide() {
    if (hidden_) return;
    hidden_.emplace(target_.parent(), target_.leaf());
    writeAll(hidden_->descriptor(), content_);
  }

  void takePermissions() const {
    if (former_) {
      // As long as the permissions are those of a hidden file, which this account may certainly
      // write.
      keepUserAttributes(target_.native, hidden_->descriptor());
      keepPermissions(permissionsOf(*former_, target_.native), hidden_->descriptor());
    } else {
      setNewMode(hidden_->descriptor(), newFileMode_);
    }
  }

  Path target_;
  mode_t newFileMode_;
  std::string content_;
  std::optional<HiddenFile> hidden_;   ///< holds the content, once it is there
  std::optional<struct stat> former_;  ///< of the target, at the flush
  bool targetStays_ = false;           ///< since it holds the content already
  bool flushed_ = false;
};

}  // namespace

std::optional<std::size_t> nameLimit(const Path& folder) {
  const std::string name = folder.native.empty() ? "." : folder.native;
  const auto limit = ::pathconf(name.c_str(), _PC_NAME_MAX);
  return limit > 0 ? std::optional(static_cast<std::size_t>(limit)) : std::nullopt;
}

HiddenFile::HiddenFile(const Path& folder, std::string_view leaf) {
  for (int name = 0; name < temporaryNames; ++name) {
    path_ = temporaryPath(folder, leaf);
    if (make()) return;
  }
  throw Failure(noTemporaryName);
}

HiddenFile::~HiddenFile() {
  if (!gone_ && stateIfNamed(descriptor_, path_)) ::unlink(path_.c_str());
}

bool HiddenFile::make() {
  constexpr int flags = O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW;
  Descriptor file(uninterrupted(::open, path_.c_str(), flags, 0600));
  if (!file.open() && errno == EEXIST) return false;
  if (!file.open()) fail(errno);
  if (uninterrupted(::flock, file.number(), LOCK_EX | LOCK_NB) != 0 && !meansNoLocks(errno)) {
    const int error = errno;
    ::unlink(path_.c_str());
    if (error != EWOULDBLOCK) fail(error);
    return false;
  }
  // Another wizard may have taken it for a stale one before the lock was ours.
  struct stat state {};
  checked(::fstat, file.number(), &state);
  if (state.st_nlink == 0) return false;
  descriptor_ = std::move(file);
  return true;
}

void HiddenFile::close() const {
  // Who may write the folder may have put another file there.
  if (!stateIfNamed(descriptor_, path_)) throw Failure("The temporary file has been taken away");
  // Closing a second descriptor tells what a close would tell, while the lock stays.
  const int second = checked(::fcntl, descriptor_.number(), F_DUPFD_CLOEXEC, 0);
  if (::close(second) != 0 && errno != EINTR) fail(errno);
}

void HiddenFile::takePlaceOf(const std::string& target) {
  close();
  checked(::rename, path_.c_str(), target.c_str());
  gone_ = true;
}

bool HiddenFile::takeFreePlace(const std::string& target) {
  close();
  constexpr unsigned replaceNothing = RENAME_NOREPLACE;
  if (::renameat2(AT_FDCWD, path_.c_str(), AT_FDCWD, target.c_str(), replaceNothing) == 0) {
    return gone_ = true;
  }
  if (errno == EEXIST) return false;
  // Some file systems can't do both at once.
  if (errno != EINVAL && errno != ENOSYS && errno != ENOTSUP) fail(errno);
  if (stateOfEntry(target)) return false;
  takePlaceOf(target);
  return true;
}

void removeStaleTemporaryFiles(const Path& folder) {
  const auto close = [](DIR* open) { ::closedir(open); };
  const std::unique_ptr<DIR, decltype(close)> entries(::opendir(folder.native.c_str()), close);
  if (!entries) return;
  while (const dirent* entry = ::readdir(entries.get())) {
    if (isHiddenName(entry->d_name)) removeIfLeft((folder / entry->d_name).native);
  }
}

std::unique_ptr<OutputFile> openOutputFile(const Path& file, mode_t newFileMode, Hidden made) {
  Path target{withoutLink(file.native)};
  if (target.leaf().empty()) fail(EISDIR);
  if (plainFileState(target.native)) checkMayBeReplaced(target);
  return std::make_unique<PosixOutputFile>(std::move(target), newFileMode, made);
}

}  // namespace kova::posix
