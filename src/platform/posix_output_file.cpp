// SPDX-License-Identifier: MIT
#include "platform/posix_output_file.h"

#include <sys/file.h>
#include <sys/xattr.h>

#include <cstdio>
#include <filesystem>
#include <optional>
#include <system_error>
#include <vector>

namespace kova::posix {

namespace {

constexpr int hiddenNames = 8;
constexpr int lockAttempts = 100;
// Leaves room for the dot and the number within the 255 bytes of a name.
constexpr std::size_t longestLeaf = 250;

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

// A rename asks only the folder; a file that is protected against writing is not to be replaced.
void checkMayBeWritten(const std::string& name) {
  if (::faccessat(AT_FDCWD, name.c_str(), W_OK, AT_EACCESS) != 0) fail(errno);
}

void keepAccessList(const std::string& from, const Descriptor& to) {
  constexpr const char* attribute = "system.posix_acl_access";
  const auto size = ::getxattr(from.c_str(), attribute, nullptr, 0);
  if (size <= 0) return;
  std::vector<char> list(static_cast<std::size_t>(size));
  checked(::getxattr, from.c_str(), attribute, list.data(), list.size());
  checked(::fsetxattr, to.number(), attribute, list.data(), list.size(), 0);
}

// The owner stays only where this account may give files away, the group where it belongs to it.
void keepOwner(const struct stat& former, const Descriptor& file) {
  struct stat state {};
  checked(::fstat, file.number(), &state);
  const auto give = [&](uid_t owner, gid_t group) {
    if (::fchown(file.number(), owner, group) != 0 && errno != EPERM) fail(errno);
  };
  if (state.st_gid != former.st_gid) give(static_cast<uid_t>(-1), former.st_gid);
  if (state.st_uid != former.st_uid) give(former.st_uid, static_cast<gid_t>(-1));
}

class PosixOutputFile final : public OutputFile {
 public:
  PosixOutputFile(const Path& target, mode_t newFileMode)
      : target_(target.native),
        newFileMode_(newFileMode),
        hidden_(target.parent(), target.leaf()) {}

  void write(std::string_view content) override { writeAll(hidden_.descriptor(), content); }

  void close() override {
    const Descriptor& file = hidden_.descriptor();
    const auto former = plainFileState(target_);
    if (former) {
      keepOwner(*former, file);
      keepAccessList(target_, file);
    }
    const mode_t mode = former ? former->st_mode & 07777U : newFileMode_;
    checked(::fchmod, file.number(), mode);
    checked(::fsync, file.number());
    hidden_.takePlaceOf(target_);
    hidden_.removeLeftovers();
  }

 private:
  std::string target_;
  mode_t newFileMode_;
  HiddenFile hidden_;
};

}  // namespace

HiddenFile::HiddenFile(const Path& folder, std::string_view leaf)
    : stem_((folder / ".").native.append(leaf.substr(0, longestLeaf)) + '~') {
  int firstError = 0;
  for (int number = 1; number <= hiddenNames; ++number) {
    const int error = take(number);
    if (error == 0) return;
    if (firstError == 0) firstError = error;
  }
  if (firstError != EWOULDBLOCK) fail(firstError);
  throw Failure("Too many other programs are writing the file");
}

HiddenFile::~HiddenFile() {
  if (descriptor_.open() && !placed_) ::unlink(name(number_).c_str());
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

void HiddenFile::takePlaceOf(const std::string& target) {
  // Closing a second descriptor tells what a close would tell, while the lock stays.
  const int second = checked(::fcntl, descriptor_.number(), F_DUPFD_CLOEXEC, 0);
  if (::close(second) != 0 && errno != EINTR) fail(errno);
  checked(::rename, name(number_).c_str(), target.c_str());
  placed_ = true;
}

void HiddenFile::removeLeftovers() const {
  for (int number = 1; number <= hiddenNames; ++number) {
    if (number == number_) continue;
    const std::string hidden = name(number);
    const Descriptor file(::open(hidden.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    if (!file.open() && errno == ENOENT && number > number_) return;
    if (!file.open() || ::flock(file.number(), LOCK_EX | LOCK_NB) != 0) continue;
    const auto state = stateIfNamed(file, hidden);
    if (state && S_ISREG(state->st_mode)) ::unlink(hidden.c_str());
  }
}

std::unique_ptr<OutputFile> openOutputFile(const Path& file, mode_t newFileMode) {
  const Path target{withoutLink(file.native)};
  if (target.leaf().empty()) fail(EISDIR);
  if (plainFileState(target.native)) checkMayBeWritten(target.native);
  return std::make_unique<PosixOutputFile>(target, newFileMode);
}

}  // namespace kova::posix
