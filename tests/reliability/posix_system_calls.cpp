// SPDX-License-Identifier: MIT
// Functions of the C library by their own names, which the linker takes in place of the library's.
// Of a write that is struck, half arrives.
#undef _FORTIFY_SOURCE  // whose inline forms of these calls would be in the way
#include "reliability/system_calls.h"

#include <dirent.h>
#include <dlfcn.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <string_view>
#include <utility>

namespace kova::test {

namespace {

std::string pathOf(const char* path) {
  return path;
}

std::string pathOf(int file) {
  std::array<char, 4096> path{};
  const std::string link = "/proc/self/fd/" + std::to_string(file);
  const auto length = ::readlink(link.c_str(), path.data(), path.size());
  return {path.data(), static_cast<std::size_t>(length < 0 ? 0 : length)};
}

template <class File>
SystemCalls::Call* noteOf(const char* name, File file) {
  return systemCalls().folder.empty() ? nullptr : note(name, pathOf(file));
}

template <class Result>
Result keep(SystemCalls::Call* noted, Result result, std::string_view with = {}) {
  if (noted == nullptr || result == -1) return result;
  noted->done = true;
  noted->with = with;
  return result;
}

int fail() {
  if (systemCalls().error == 0) static_cast<void>(std::raise(SIGKILL));
  errno = systemCalls().error;
  return -1;
}

template <class Result = int, class... Arguments>
Result pass(const char* name, Arguments... arguments) {
  return reinterpret_cast<Result (*)(Arguments...)>(::dlsym(RTLD_NEXT, name))(arguments...);
}

template <class Result = int, class File, class... Arguments>
Result callWith(std::string_view with, const char* name, File file, Arguments... arguments) {
  SystemCalls::Call* const noted = noteOf(name, file);
  if (strikes(noted)) return fail();
  return keep(noted, pass<Result>(name, file, arguments...), with);
}

template <class Result = int, class File, class... Arguments>
Result call(const char* name, File file, Arguments... arguments) {
  return callWith<Result>({}, name, file, arguments...);
}

/// A call that a run is not struck at.
template <class Result = int, class... Arguments>
Result unlessRefused(const char* name, Arguments... arguments) {
  return systemCalls().refused.contains(name) ? fail() : pass<Result>(name, arguments...);
}

int flush(const char* name, int file) {
  SystemCalls::Call* const noted = noteOf(name, file);
  if (strikes(noted)) return fail();
  return keep(noted, systemCalls().flushes ? pass(name, file) : 0);
}

}  // namespace

extern "C" {

int open(const char* path, int flags, mode_t mode) {
  return callWith(std::to_string(flags), "open", path, flags, mode);
}
int fcntl(int file, int command, long argument) {
  return call("fcntl", file, command, argument);
}
int flock(int file, int operation) noexcept {
  return call("flock", file, operation);
}
ssize_t read(int file, void* data, size_t size) {
  return call<ssize_t>("read", file, data, size);
}
ssize_t write(int file, const void* data, size_t size) {
  SystemCalls::Call* const noted = noteOf("write", file);
  const bool fails = strikes(noted);
  const auto count = pass<ssize_t>("write", file, data, fails ? size / 2 : size);
  const auto written = static_cast<std::size_t>(std::max<ssize_t>(count, 0));
  keep(noted, count, {static_cast<const char*>(data), written});
  return fails ? fail() : count;
}
ssize_t copy_file_range(int from, off_t* at, int to, off_t* into, size_t size, unsigned flags) {
  SystemCalls::Call* const noted = noteOf("copy_file_range", to);
  if (strikes(noted)) return fail();
  const auto count = pass<ssize_t>("copy_file_range", from, at, to, into, size, flags);
  std::string bytes(noted == nullptr || count < 0 ? 0 : static_cast<std::size_t>(count), '\0');
  static_cast<void>(::pread(to, bytes.data(), bytes.size(), ::lseek(to, 0, SEEK_CUR) - count));
  return keep(noted, count, bytes);
}
int close(int file) {
  SystemCalls::Call* const noted = noteOf("close", file);
  const bool fails = strikes(noted);
  const int closed = keep(noted, pass("close", file));
  return fails ? fail() : closed;
}
int fsync(int file) {
  return flush("fsync", file);
}
int syncfs(int file) noexcept {
  return flush("syncfs", file);
}
int fchmod(int file, mode_t mode) noexcept {
  return call("fchmod", file, mode);
}
int futimens(int file, const timespec* times) noexcept {
  return call("futimens", file, times);
}
int rename(const char* from, const char* to) noexcept {
  return callWith(to, "rename", from, to);
}
int renameat2(int a, const char* from, int b, const char* to, unsigned flags) noexcept {
  SystemCalls::Call* const noted = noteOf("rename", from);
  if (strikes(noted)) return fail();
  return keep(noted, unlessRefused("renameat2", a, from, b, to, flags), to);
}
int linkat(int from, const char* path, int to, const char* name, int flags) noexcept {
  // Of a file without a name, which is known by its number alone.
  const std::string number = std::string(path).substr(std::string_view(path).rfind('/') + 1);
  SystemCalls::Call* const noted = noteOf("linkat", number.empty() ? from : std::stoi(number));
  if (strikes(noted)) return fail();
  return keep(noted, pass("linkat", from, path, to, name, flags), name);
}
int unlink(const char* path) noexcept {
  return call("unlink", path);
}
int mkdir(const char* path, mode_t mode) noexcept {
  return call("mkdir", path, mode);
}
int stat(const char* path, struct stat* state) noexcept {
  return call("stat", path, state);
}
int fstatfs(int file, struct statfs* state) noexcept {
  return unlessRefused("fstatfs", file, state);
}
ssize_t getxattr(const char* path, const char* name, void* value, size_t size) noexcept {
  return unlessRefused<ssize_t>("getxattr", path, name, value, size);
}
ssize_t fgetxattr(int file, const char* name, void* value, size_t size) noexcept {
  return unlessRefused<ssize_t>("fgetxattr", file, name, value, size);
}
int fsetxattr(int file, const char* name, const void* value, size_t size, int flags) noexcept {
  return unlessRefused("fsetxattr", file, name, value, size, flags);
}
DIR* opendir(const char* path) {
  return strikes(noteOf("opendir", path)) ? (fail(), nullptr) : pass<DIR*>("opendir", path);
}
}

}  // namespace kova::test
