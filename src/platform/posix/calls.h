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

#include "platform/file_system.h"
#include "platform/handle.h"

namespace kova::native {

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

/// The file system has no such call.
inline bool isNotPossibleHere(int error) {
  return error == EINVAL || error == ENOSYS || error == ENOTSUP;
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

/// State of what is open.
inline struct stat stateOf(const Handle& file) {
  struct stat state {};
  checked(::fstat, file.get(), &state);
  return state;
}

inline FileState asFileState(const struct stat& state) {
  constexpr std::int64_t second = 1'000'000'000;
  return {state.st_dev, state.st_ino, static_cast<std::uint64_t>(state.st_size),
          state.st_mtim.tv_sec * second + state.st_mtim.tv_nsec};
}

/// A failure that says what stands in place of the plain file that was expected.
[[noreturn]] inline void failAsNoPlainFile(mode_t mode) {
  if (S_ISDIR(mode)) fail(EISDIR);
  throw Failure("Not a plain file");
}

}  // namespace kova::native
