// SPDX-License-Identifier: MIT
#include "platform/windows/calls.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <system_error>

namespace kova {

Handle::~Handle() {
  if (open()) ::CloseHandle(native_);
}

namespace native {

namespace {

// From here on a name, with a short one of an entry behind it, may be longer than 260 characters.
constexpr std::size_t longName = 200;

std::wstring fullName(const std::wstring& name) {
  std::wstring full(::GetFullPathNameW(name.c_str(), 0, nullptr, nullptr), L'\0');
  const auto size = static_cast<DWORD>(full.size());
  full.resize(::GetFullPathNameW(name.c_str(), size, full.data(), nullptr));
  return full;
}

}  // namespace

void fail(DWORD error) {
  if (error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION) {
    throw Failure("Another program has the file open");
  }
  // The C library knows no word for these, or the wrong one.
  constexpr std::array<DWORD, 4> device{ERROR_WRITE_FAULT, ERROR_READ_FAULT, ERROR_GEN_FAILURE,
                                        ERROR_NETNAME_DELETED};
  if (std::find(device.begin(), device.end(), error) != device.end()) error = ERROR_IO_DEVICE;
  const auto known = std::system_category().default_error_condition(static_cast<int>(error));
  if (known.category() != std::generic_category()) {
    throw Failure("Windows error " + std::to_string(error));
  }
  throw Failure(std::strerror(known.value()));
}

std::wstring wide(std::string_view utf8) {
  std::wstring text(utf8.size(), L'\0');
  const int size = static_cast<int>(utf8.size());
  const int count = ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, text.data(), size);
  text.resize(static_cast<std::size_t>(count));
  return text;
}

std::string narrow(std::wstring_view wide) {
  std::string text(3 * wide.size(), '\0');
  const int count =
      ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), static_cast<int>(wide.size()), text.data(),
                            static_cast<int>(text.size()), nullptr, nullptr);
  text.resize(static_cast<std::size_t>(count));
  return text;
}

std::wstring nameOf(const Path& path) {
  std::wstring name = wide(path.native);
  // Else it would mean the folder in which the process stands on that drive.
  if (name.size() == 2 && name.back() == L':') name += L'\\';
  if (name.size() < longName) return name;
  const std::wstring full = fullName(name);
  if (full.starts_with(L"\\\\?\\") || full.starts_with(L"\\\\.\\")) return full;
  return full.starts_with(L"\\\\") ? L"\\\\?\\UNC" + full.substr(1) : L"\\\\?\\" + full;
}

}  // namespace native

}  // namespace kova
