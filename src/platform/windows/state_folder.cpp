// SPDX-License-Identifier: MIT
#include "platform/state_folder.h"

#include "platform/native_files.h"
#include "platform/windows/file_state.h"

namespace kova {

Path stateHome() {
  std::wstring value(::GetEnvironmentVariableW(L"LOCALAPPDATA", nullptr, 0), L'\0');
  const auto size = static_cast<DWORD>(value.size());
  value.resize(::GetEnvironmentVariableW(L"LOCALAPPDATA", value.data(), size));
  return {native::narrow(value)};
}

namespace native {

// It inherits the access list of a folder that only this account may read.
void makePrivateFolder(const Path& folder) {
  if (::CreateDirectoryW(nameOf(folder).c_str(), nullptr) != FALSE) return;
  if (const DWORD error = ::GetLastError(); error != ERROR_ALREADY_EXISTS) fail(error);
}

void checkIsPrivate(const Path& folder) {
  const DWORD attributes = ::GetFileAttributesW(nameOf(folder).c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) fail();
  if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) throw Failure("It is a link");
  if ((attributes & FILE_ATTRIBUTE_DIRECTORY) == 0) throw Failure("Not a directory");
}

std::optional<FileState> stateOfOwnFile(const Path& file) {
  const DWORD attributes = ::GetFileAttributesW(nameOf(file).c_str());
  const bool isLink = (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
  return attributes == INVALID_FILE_ATTRIBUTES || isLink ? std::nullopt : state(file);
}

bool entryExists(const Path& name) {
  return ::GetFileAttributesW(nameOf(name).c_str()) != INVALID_FILE_ATTRIBUTES ||
         !meansAbsent(::GetLastError());
}

void replaceName(const Path& from, const Path& to) {
  checked(::MoveFileExW(nameOf(from).c_str(), nameOf(to).c_str(), MOVEFILE_REPLACE_EXISTING));
}

bool isHeld(const Path& file) {
  const Handle open =
      openFile(nameOf(file), GENERIC_READ, 0, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT);
  return !open.open() && ::GetLastError() == ERROR_SHARING_VIOLATION;
}

}  // namespace native
}  // namespace kova
