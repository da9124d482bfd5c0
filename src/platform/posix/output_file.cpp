// SPDX-License-Identifier: MIT
#include "platform/posix/output_file.h"

#include <dirent.h>
#include <sys/file.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <system_error>
#include <tuple>
#include <utility>

#include "platform/hidden_name.h"
#include "platform/posix/rights.h"

namespace kova::posix {

namespace {

constexpr int lockAttempts = 100;
constexpr std::size_t usualNameLimit = 255;  // in bytes, or characters on some file systems

// What stands ahead of the number in the hidden names for `leaf`: of a long name only the
// beginning, without half a character, which some file systems refuse.
std::string hiddenStem(const Path& folder, std::string_view leaf) {
  constexpr std::size_t dotAndNumber = 2;
  const std::size_t limit = nameLimit(folder).value_or(usualNameLimit);
  const std::size_t longest = std::min(limit, usualNameLimit) - hiddenMark.size() - dotAndNumber;
  if (leaf.size() > longest) {
    std::size_t end = longest;
    while (end > 0 && (static_cast<unsigned char>(leaf[end]) & 0xC0U) == 0x80U) --end;
    leaf = leaf.substr(0, end);
  }
  return ("." + std::string(leaf)).append(hiddenMark);
}

// State of an open file, if `name` is still its name.
std::optional<struct stat> stateIfNamed(const Descriptor& file, const std::string& name) {
  struct stat opened {};
  checked(::fstat, file.number(), &opened);
  struct stat named {};
  if (::lstat(name.c_str(), &named) != 0) return std::nullopt;
  if (opened.st_dev != named.st_dev || opened.st_ino != named.st_ino) return std::nullopt;
  return opened;
}

// Some network mounts have no locks at all.
bool meansNoLocks(int error) {
  return error == ENOLCK || error == ENOTSUP || error == ENOSYS || error == EINVAL;
}

// False if another process holds the file. Without locks only a file that this run has made itself
// is certainly nobody else's.
bool lock(const Descriptor& file, const std::string& name, bool made) {
  if (uninterrupted(::flock, file.number(), LOCK_EX | LOCK_NB) == 0) return true;
  const int error = errno;
  if (meansNoLocks(error)) return made;
  if (error == EWOULDBLOCK) return false;
  if (made) ::unlink(name.c_str());
  fail(error);
}

// Some other entry stands under the name, or somebody else's file: the next name may be free.
bool nameIsTaken(int error) {
  return error == EACCES || error == ELOOP || error == EISDIR || error == ENXIO || error == EPERM;
}

std::optional<struct stat> plainFileState(const std::string& name) {
  struct stat state {};
  if (::lstat(name.c_str(), &state) != 0) {
    if (errno == ENOENT) return std::nullopt;
    fail(errno);
  }
  if (!S_ISREG(state.st_mode)) failAsNoPlainFile(state.st_mode);
  return state;
}

std::string withoutLink(const std::string& name) {
  struct stat state {};
  if (::lstat(name.c_str(), &state) != 0 || !S_ISLNK(state.st_mode)) return name;
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
  if (state && S_ISREG(state->st_mode) && state->st_nlink == 1) ::unlink(hidden.c_str());
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
      takeRights();
      checked(::fsync, hidden_->descriptor().number());
    }
    flushed_ = true;
  }

  void close() override {
    if (targetStays_ && !isSameState(former_, plainFileState(target_.native))) flushed_ = false;
    if (!flushed_) flush();
    if (!targetStays_) hidden_->takePlaceOf(target_.native);
    if (hidden_) hidden_->removeLeftovers();
    hidden_.reset();
  }

 private:
  void hide() {
    if (hidden_) return;
    hidden_.emplace(target_.parent(), target_.leaf());
    writeAll(hidden_->descriptor(), content_);
  }

  void takeRights() const {
    if (former_) {
      // As long as the rights are those of a hidden file, which this account may certainly write.
      keepUserAttributes(target_.native, hidden_->descriptor());
      keepRights(rightsOf(*former_, target_.native), hidden_->descriptor());
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

HiddenFile::HiddenFile(const Path& folder, std::string_view leaf)
    : stem_((folder / hiddenStem(folder, leaf)).native) {
  const int error = errorOfTakingOne([this](int number) { return take(number); });
  if (error == EWOULDBLOCK) throw Failure(allNamesHeld);
  if (error != 0) fail(error);
}

HiddenFile::~HiddenFile() {
  if (descriptor_.open() && !gone_) ::unlink(path().c_str());
}

int HiddenFile::take(int number) {
  const std::string hidden = name(number);
  constexpr int flags = O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
  const auto open = [&](int further) {
    return uninterrupted(::open, hidden.c_str(), flags | further, 0600);
  };
  for (int attempt = 0; attempt < lockAttempts; ++attempt) {
    Descriptor file(open(O_CREAT | O_EXCL));
    const bool made = file.open();
    if (!made && errno == EEXIST) {
      file = Descriptor(open(0));
      // Its former holder has renamed or removed it in between.
      if (!file.open() && errno == ENOENT) continue;
    }
    if (!file.open() && nameIsTaken(errno)) return errno;
    if (!file.open()) fail(errno);
    if (!lock(file, hidden, made)) return EWOULDBLOCK;
    const auto state = stateIfNamed(file, hidden);
    // Its former holder has renamed or removed it before the lock was ours.
    if (!state) continue;
    // A second name would let the content change behind the table's back.
    if (!S_ISREG(state->st_mode) || state->st_nlink != 1) return EPERM;
    number_ = number;
    descriptor_ = std::move(file);
    if (state->st_size != 0) checked(::ftruncate, descriptor_.number(), 0);
    return 0;
  }
  return EWOULDBLOCK;
}

std::string HiddenFile::name(int number) const {
  return stem_ + std::to_string(number);
}

void HiddenFile::close() const {
  // Closing a second descriptor tells what a close would tell, while the lock stays.
  const int second = checked(::fcntl, descriptor_.number(), F_DUPFD_CLOEXEC, 0);
  if (::close(second) != 0 && errno != EINTR) fail(errno);
}

void HiddenFile::takePlaceOf(const std::string& target) {
  close();
  checked(::rename, path().c_str(), target.c_str());
  gone_ = true;
}

bool HiddenFile::takeFreePlace(const std::string& target) {
  close();
  constexpr unsigned replaceNothing = RENAME_NOREPLACE;
  if (::renameat2(AT_FDCWD, path().c_str(), AT_FDCWD, target.c_str(), replaceNothing) == 0) {
    return gone_ = true;
  }
  if (errno == EEXIST) return false;
  // Some file systems can't do both at once.
  if (errno != EINVAL && errno != ENOSYS && errno != ENOTSUP) fail(errno);
  struct stat state {};
  if (::lstat(target.c_str(), &state) == 0) return false;
  if (errno != ENOENT) fail(errno);
  takePlaceOf(target);
  return true;
}

void HiddenFile::removeLeftovers() const {
  for (int number = 1; number <= hiddenNames; ++number) {
    if (number == number_) continue;
    const std::string hidden = name(number);
    struct stat state {};
    if (::lstat(hidden.c_str(), &state) == 0) {
      removeIfLeft(hidden);
    } else if (number > number_) {
      return;
    }
  }
}

void removeLeftovers(const Path& folder) {
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
