// SPDX-License-Identifier: MIT
// Calls of Windows whose results are believed only when they have been seen.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <utility>

#include "platform/file_system.h"

namespace kova::windows {

/// Ends a call that went wrong, with the C library's description: English on every system.
[[noreturn]] void fail(DWORD error = ::GetLastError());

/// The result of a call, which must not be false.
inline void checked(BOOL result) {
  if (result == FALSE) fail();
}

/// UTF-8 as Windows takes it, and back.
std::wstring wide(std::string_view utf8);
std::string narrow(std::wstring_view wide);

/// A path as calls take it: a drive alone is its root, and a long path is marked as one.
std::wstring nameOf(const Path& path);

/// Owner of a handle.
class Handle {
 public:
  explicit Handle(HANDLE handle = nullptr)
      : handle_(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  Handle(Handle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Handle& operator=(Handle&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~Handle() {
    if (open()) ::CloseHandle(handle_);
  }
  HANDLE get() const { return handle_; }
  bool open() const { return handle_ != nullptr; }

 private:
  HANDLE handle_;
};

}  // namespace kova::windows
