// SPDX-License-Identifier: MIT
// What the system has opened, and who closes it.
#pragma once

#include <utility>

namespace kova {

/// Owner of an open file or folder.
class Handle {
 public:
#ifdef _WIN32
  using Native = void*;
  static constexpr Native none = nullptr;
#else
  using Native = int;
  static constexpr Native none = -1;
#endif

  explicit Handle(Native native = none) : native_(native) {}
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  Handle(Handle&& other) noexcept : native_(std::exchange(other.native_, none)) {}
  Handle& operator=(Handle&& other) noexcept {
    std::swap(native_, other.native_);
    return *this;
  }
  ~Handle();
  Native get() const {
    return native_;
  }
  bool open() const {
    return native_ != none;
  }

 private:
  Native native_;
};

}  // namespace kova
