// SPDX-License-Identifier: MIT
// Preloaded into a program: counts its system calls on the files below one folder and lets one of
// them fail, or kills the program at it. Of a write that is struck, half arrives.
#undef _FORTIFY_SOURCE  // whose inline forms of these calls would be in the way
#include <dlfcn.h>
#include <sys/types.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

struct timespec;

namespace {

const char* setting(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

int number(const char* name) {
  return static_cast<int>(std::strtol(setting(name), nullptr, 10));
}

struct State {
  const char* folder = setting("FAULT_FOLDER");
  int at = number("FAULT_AT");
  int error = number("FAULT_ERROR");  // 0 kills ahead of the call, -1 behind it
  int calls = 0;
  const char* struck = "none";
  std::array<bool, 1024> files{};

  bool watches(const char* path) const {
    return *folder != '\0' && std::strncmp(path, folder, std::strlen(folder)) == 0;
  }
  bool strikes(const char* name) {
    if (++calls != at || error < 0) return false;
    if (error == 0) static_cast<void>(std::raise(SIGKILL));
    struck = name;
    errno = error;
    return true;
  }
  void isThrough() const {
    if (calls == at && error < 0) static_cast<void>(std::raise(SIGKILL));
  }
};

State& state() {
  static State state;
  return state;
}

bool watched(int file) {
  return file >= 0 && file < 1024 && state().files.at(static_cast<std::size_t>(file));
}

template <class Result = int, class... Arguments>
Result call(const char* name, bool counts, Arguments... arguments) {
  const auto real = reinterpret_cast<Result (*)(Arguments...)>(::dlsym(RTLD_NEXT, name));
  if (counts && state().strikes(name)) return -1;
  const Result result = real(arguments...);
  if (counts) state().isThrough();
  return result;
}

[[gnu::destructor]] void report() {
  static_cast<void>(std::fprintf(stderr, "%d calls, struck: %s\n", state().calls, state().struck));
}

}  // namespace

extern "C" {

int open(const char* path, int flags, mode_t mode) {
  const bool counts = state().watches(path);
  const int file = call("open", counts, path, flags, mode);
  if (file >= 0 && file < 1024) state().files.at(static_cast<std::size_t>(file)) = counts;
  return file;
}
int fcntl(int file, int command, long argument) {
  const int result = call("fcntl", watched(file), file, command, argument);
  const bool duplicates = command == 0 || command == 1030;
  if (duplicates && watched(file) && result >= 0 && result < 1024) {
    state().files.at(static_cast<std::size_t>(result)) = true;
  }
  return result;
}
ssize_t read(int file, void* data, size_t size) {
  return call<ssize_t>("read", watched(file), file, data, size);
}
ssize_t write(int file, const void* data, size_t size) {
  const bool next = watched(file) && state().calls + 1 == state().at && state().error >= 0;
  if (next) call<ssize_t>("write", false, file, data, size / 2);
  return call<ssize_t>("write", watched(file), file, data, size);
}
int close(int file) {
  const bool counts = watched(file);
  if (counts) state().files.at(static_cast<std::size_t>(file)) = false;
  const int result = counts && state().strikes("close") ? -1 : 0;
  const int error = errno;
  const int closed = call("close", false, file);
  if (counts) state().isThrough();
  if (result != 0) errno = error;
  return result != 0 ? result : closed;
}
int fsync(int file) {
  return call("fsync", watched(file), file);
}
int fchmod(int file, mode_t mode) noexcept {
  return call("fchmod", watched(file), file, mode);
}
int fchown(int file, uid_t owner, gid_t group) noexcept {
  return call("fchown", watched(file), file, owner, group);
}
int ftruncate(int file, off_t size) noexcept {
  return call("ftruncate", watched(file), file, size);
}
int futimens(int file, const timespec* times) noexcept {
  return call("futimens", watched(file), file, times);
}
int flock(int file, int operation) noexcept {
  return call("flock", watched(file), file, operation);
}
int rename(const char* from, const char* to) noexcept {
  return call("rename", state().watches(from), from, to);
}
int unlink(const char* path) noexcept {
  return call("unlink", state().watches(path), path);
}
int mkdir(const char* path, mode_t mode) noexcept {
  return call("mkdir", state().watches(path), path, mode);
}
}
