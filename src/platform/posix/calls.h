// SPDX-License-Identifier: MIT
// System calls whose results are believed only when they have been seen.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/failure.h"

namespace kova::posix {

/// Ends a call that went wrong, with the system's own description in English whatever the locale.
[[noreturn]] inline void fail(int error) {
  const char* description = strerrordesc_np(error);
  throw Failure(description != nullptr ? description : "Error " + std::to_string(error));
}

/// Result of a call that is repeated as long as a signal cuts it short.
template <class Call, class... Arguments>
auto uninterrupted(Call call, Arguments... arguments) {
  auto result = call(arguments...);
  while (result == -1 && errno == EINTR) result = call(arguments...);
  return result;
}

/// Result of a call, which must not be -1.
template <class Call, class... Arguments>
auto checked(Call call, Arguments... arguments) {
  const auto result = uninterrupted(call, arguments...);
  if (result == -1) fail(errno);
  return result;
}

/// There is certainly no entry of the name.
inline bool meansAbsent(int error) {
  return error == ENOENT || error == ENOTDIR;
}

/// State of an entry; nothing if there is none. `check` is stat, which follows links, or lstat.
template <class Check>
std::optional<struct stat> stateFrom(Check check, const std::string& name) {
  struct stat state {};
  if (uninterrupted(check, name.c_str(), &state) == 0) return state;
  if (!meansAbsent(errno)) fail(errno);
  return std::nullopt;
}

/// State of what a name leads to; nothing if there is nothing.
inline std::optional<struct stat> stateOf(const std::string& name) {
  return stateFrom(::stat, name);
}

/// State of the entry itself: of a link the link.
inline std::optional<struct stat> stateOfEntry(const std::string& name) {
  return stateFrom(::lstat, name);
}

/// Owner of a file descriptor.
class Descriptor {
 public:
  explicit Descriptor(int number = -1) : number_(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~Descriptor() {
    if (number_ != -1) ::close(number_);
  }
  int number() const { return number_; }
  bool open() const { return number_ != -1; }

 private:
  int number_;
};

/// Appends all of `content`.
inline void writeAll(const Descriptor& file, std::string_view content) {
  while (!content.empty()) {
    const auto written = checked(::write, file.number(), content.data(), content.size());
    if (written == 0) fail(ENOSPC);
    content.remove_prefix(static_cast<std::size_t>(written));
  }
}

/// A failure that says what stands in place of the plain file that was expected.
[[noreturn]] inline void failAsNoPlainFile(mode_t mode) {
  if (S_ISDIR(mode)) fail(EISDIR);
  throw Failure("Not a plain file");
}

}  // namespace kova::posix
