// SPDX-License-Identifier: MIT
// Preloaded or linked into a program: counts its system calls on the files below FAULT_FOLDER and
// lets one of them fail, or kills the program at it. Of a write that is struck, half arrives.
//
// Into the file that FAULT_RECORD names goes a line for each call that has changed what is on disk
// or has flushed it: the call and what it was given, between tabs. A file goes by the number that
// "open" gave it, bytes are in hexadecimal.
#undef _FORTIFY_SOURCE  // whose inline forms of these calls would be in the way
#include <dlfcn.h>
#include <sys/types.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <initializer_list>
#include <string>
#include <utility>

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
  int at = number("FAULT_AT");
  int error = number("FAULT_ERROR");  // 0 kills ahead of the call, -1 behind it
  int calls = 0;
  const char* struck = "none";
  std::array<bool, 1024> files{};

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

// The settings may come and go while the program runs.
bool watches(const char* path) {
  const char* folder = setting("FAULT_FOLDER");
  return *folder != '\0' && std::strncmp(path, folder, std::strlen(folder)) == 0;
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

std::string hexadecimal(const void* data, std::size_t size) {
  constexpr const char* digits = "0123456789abcdef";
  std::string text;
  for (const auto* byte = static_cast<const unsigned char*>(data); size > 0; ++byte, --size) {
    text += digits[*byte >> 4U];
    text += digits[*byte & 15U];
  }
  return text;
}

// Written line by line, so that a run that is killed has recorded what it did.
void record(std::initializer_list<std::string> words) {
  const char* name = setting("FAULT_RECORD");
  if (*name == '\0') return;
  std::ofstream file(name, std::ios::app);
  const char* separator = "";
  for (const std::string& word : words) file << std::exchange(separator, "\t") << word;
  file << '\n';
}

template <class Result>
Result recorded(Result result, bool counts, std::initializer_list<std::string> words) {
  if (counts && result != -1) record(words);
  return result;
}

[[gnu::destructor]] void report() {
  if (*setting("FAULT_FOLDER") == '\0') return;
  static_cast<void>(std::fprintf(stderr, "%d calls, struck: %s\n", state().calls, state().struck));
}

}  // namespace

extern "C" {

int open(const char* path, int flags, mode_t mode) {
  const bool counts = watches(path);
  const int file = call("open", counts, path, flags, mode);
  if (file >= 0 && file < 1024) state().files.at(static_cast<std::size_t>(file)) = counts;
  if (watched(file)) record({"open", std::to_string(file), std::to_string(flags), path});
  return file;
}
int fcntl(int file, int command, long argument) {
  const int result = call("fcntl", watched(file), file, command, argument);
  const bool duplicates = command == 0 || command == 1030;
  if (duplicates && watched(file) && result >= 0 && result < 1024) {
    state().files.at(static_cast<std::size_t>(result)) = true;
    record({"dup", std::to_string(file), std::to_string(result)});
  }
  return result;
}
ssize_t read(int file, void* data, size_t size) {
  return call<ssize_t>("read", watched(file), file, data, size);
}
ssize_t write(int file, const void* data, size_t size) {
  const auto put = [&](bool counts, size_t bytes) {
    const auto count = call<ssize_t>("write", counts, file, data, bytes);
    if (watched(file) && count > 0) {
      const auto written = static_cast<std::size_t>(count);
      record({"write", std::to_string(file), hexadecimal(data, written)});
    }
    return count;
  };
  const bool next = watched(file) && state().calls + 1 == state().at && state().error >= 0;
  if (next) put(false, size / 2);
  return put(watched(file), size);
}
ssize_t copy_file_range(int from, off_t* at, int to, off_t* into, size_t size, unsigned flags) {
  const bool counts = watched(to);
  const auto count = call<ssize_t>("copy_file_range", counts, from, at, to, into, size, flags);
  return recorded(count, counts,
                  {"copy", std::to_string(from), std::to_string(to), std::to_string(count)});
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
  return recorded(call("fsync", watched(file), file), watched(file),
                  {"fsync", std::to_string(file)});
}
int syncfs(int file) noexcept {
  return recorded(call("syncfs", watched(file), file), watched(file),
                  {"syncfs", std::to_string(file)});
}
int fchmod(int file, mode_t mode) noexcept {
  return call("fchmod", watched(file), file, mode);
}
int fchown(int file, uid_t owner, gid_t group) noexcept {
  return call("fchown", watched(file), file, owner, group);
}
int ftruncate(int file, off_t size) noexcept {
  return recorded(call("ftruncate", watched(file), file, size), watched(file),
                  {"ftruncate", std::to_string(file), std::to_string(size)});
}
int futimens(int file, const timespec* times) noexcept {
  return call("futimens", watched(file), file, times);
}
int flock(int file, int operation) noexcept {
  return call("flock", watched(file), file, operation);
}
int rename(const char* from, const char* to) noexcept {
  return recorded(call("rename", watches(from), from, to), watches(from), {"rename", from, to});
}
int renameat2(int a, const char* from, int b, const char* to, unsigned flags) noexcept {
  return recorded(call("renameat2", watches(from), a, from, b, to, flags), watches(from),
                  {"rename", from, to});
}
int unlink(const char* path) noexcept {
  return recorded(call("unlink", watches(path), path), watches(path), {"unlink", path});
}
int mkdir(const char* path, mode_t mode) noexcept {
  return recorded(call("mkdir", watches(path), path, mode), watches(path), {"mkdir", path});
}
}
