// SPDX-License-Identifier: MIT
// Calls of Windows whose results are believed only when they have been seen.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "platform/file_system.h"
#include "platform/handle.h"

namespace kova::native {

/// Length of the longest name where the disk does not tell, in UTF-16 units.
inline constexpr DWORD usualNameLimit = 255;

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

}  // namespace kova::native
