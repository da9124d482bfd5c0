// SPDX-License-Identifier: MIT
// Functions of the C library by their own names, which the linker takes in place of the library's.
// Of a write that is struck, half arrives.
#undef _FORTIFY_SOURCE  // whose inline forms of these calls would be in the way
#include "reliability/system_calls.h"

#include <dirent.h>
#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

namespace kova::test {

SystemCalls& systemCalls() {
  static SystemCalls calls;
  return calls;
}

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

/// Notes a call; true if it is to fail.
template <class File>
bool strikes(const char* name, File file) {
  SystemCalls& calls = systemCalls();
  if (calls.folder.empty()) return false;
  const std::string path = pathOf(file);
  if (!path.starts_with(calls.folder)) return false;
  calls.made.push_back({name, path});
  const std::size_t number = calls.made.size();
  return number == calls.at || (calls.onwards && number > calls.at);
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
Result call(const char* name, File file, Arguments... arguments) {
  return strikes(name, file) ? fail() : pass<Result>(name, file, arguments...);
}

}  // namespace

extern "C" {

int open(const char* path, int flags, mode_t mode) {
  return call("open", path, flags, mode);
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
  if (!strikes("write", file)) return pass<ssize_t>("write", file, data, size);
  pass<ssize_t>("write", file, data, size / 2);
  return fail();
}
int close(int file) {
  const bool fails = strikes("close", file);
  const int closed = pass("close", file);
  return fails ? fail() : closed;
}
int fsync(int file) {
  return strikes("fsync", file) ? fail() : 0;
}
int syncfs(int file) noexcept {
  return strikes("syncfs", file) ? fail() : 0;
}
int fchmod(int file, mode_t mode) noexcept {
  return call("fchmod", file, mode);
}
int futimens(int file, const timespec* times) noexcept {
  return call("futimens", file, times);
}
int rename(const char* from, const char* to) noexcept {
  return call("rename", from, to);
}
int renameat2(int a, const char* from, int b, const char* to, unsigned flags) noexcept {
  return strikes("rename", from) ? fail() : pass("renameat2", a, from, b, to, flags);
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
DIR* opendir(const char* path) {
  return strikes("opendir", path) ? (fail(), nullptr) : pass<DIR*>("opendir", path);
}
}

}  // namespace kova::test
