// SPDX-License-Identifier: MIT
#include "platform/windows/file_state.h"

#include <vector>

namespace kova::native {

namespace {

std::uint64_t joined(DWORD high, DWORD low) {
  return (std::uint64_t{high} << 32U) | low;
}

// The user of this run; empty if it can't be told.
std::vector<char> ownAccount() {
  HANDLE opened = nullptr;
  if (::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &opened) == FALSE) return {};
  const Handle token(opened);
  DWORD size = 0;
  ::GetTokenInformation(opened, TokenUser, nullptr, 0, &size);
  std::vector<char> user(size);
  if (::GetTokenInformation(opened, TokenUser, user.data(), size, &size) == FALSE) return {};
  return user;
}

bool meansNotHere(DWORD error) {
  return error == ERROR_NOT_SUPPORTED || error == ERROR_INVALID_FUNCTION ||
         error == ERROR_CALL_NOT_IMPLEMENTED;
}

}  // namespace

bool meansAbsent(DWORD error) {
  return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND ||
         error == ERROR_DIRECTORY || error == ERROR_INVALID_NAME;
}

Handle openFile(const std::wstring& name, DWORD access, DWORD share, DWORD how, DWORD flags) {
  const HANDLE file = ::CreateFileW(name.c_str(), access, share, nullptr, how,
                                    FILE_ATTRIBUTE_NORMAL | flags, nullptr);
  return Handle(file == INVALID_HANDLE_VALUE ? Handle::none : file);
}

Handle openFolder(const Path& folder, DWORD access) {
  const std::wstring name = folder.native.empty() ? L"." : nameOf(folder);
  return openFile(name, access, shareAll, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
}

std::optional<FileInformation> stateOf(const std::wstring& name) {
  const Handle file =
      openFile(name, FILE_READ_ATTRIBUTES, shareAll, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
  if (!file.open()) {
    const DWORD error = ::GetLastError();
    if (!meansAbsent(error)) fail(error);
    return std::nullopt;
  }
  // A pipe, or the name of a device.
  const DWORD type = ::GetFileType(file.get());
  if (type == FILE_TYPE_CHAR || type == FILE_TYPE_PIPE) return std::nullopt;
  return stateOf(file);
}

FileInformation stateOf(const Handle& file) {
  FileInformation state{};
  checked(::GetFileInformationByHandle(file.get(), &state));
  return state;
}

bool isFolder(const FileInformation& state) {
  return (state.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool isPlainFile(const FileInformation& state) {
  constexpr DWORD others = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE;
  return (state.dwFileAttributes & others) == 0;
}

bool isProtected(const FileInformation& state) {
  return (state.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0;
}

FileState asFileState(const FileInformation& state) {
  // Windows counts tenths of a microsecond since 1601.
  constexpr std::int64_t since1970 = 116'444'736'000'000'000;
  const auto& written = state.ftLastWriteTime;
  const auto time =
      static_cast<std::int64_t>(joined(written.dwHighDateTime, written.dwLowDateTime));
  return {state.dwVolumeSerialNumber, joined(state.nFileIndexHigh, state.nFileIndexLow),
          joined(state.nFileSizeHigh, state.nFileSizeLow), (time - since1970) * 100};
}

bool isOwn(const Handle& file) {
  DWORD size = 0;
  ::GetKernelObjectSecurity(file.get(), OWNER_SECURITY_INFORMATION, nullptr, 0, &size);
  std::vector<char> security(size);
  PSID owner = nullptr;
  BOOL isDefault = FALSE;
  if (::GetKernelObjectSecurity(file.get(), OWNER_SECURITY_INFORMATION, security.data(), size,
                                &size) == FALSE ||
      ::GetSecurityDescriptorOwner(security.data(), &owner, &isDefault) == FALSE ||
      owner == nullptr) {
    return false;
  }
  if (::IsWellKnownSid(owner, WinWorldSid) != FALSE) return true;
  std::vector<char> account = ownAccount();
  if (account.empty()) return false;
  return ::EqualSid(owner, reinterpret_cast<TOKEN_USER*>(account.data())->User.Sid) != FALSE;
}

void keepAccessList(const std::wstring& from, const std::wstring& to) {
  DWORD size = 0;
  ::GetFileSecurityW(from.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
  std::vector<char> list(size);
  if (::GetFileSecurityW(from.c_str(), DACL_SECURITY_INFORMATION, list.data(), size, &size) ==
      FALSE) {
    if (meansNotHere(::GetLastError())) return;
    fail();
  }
  if (::SetFileSecurityW(to.c_str(), DACL_SECURITY_INFORMATION, list.data()) == FALSE &&
      !meansNotHere(::GetLastError())) {
    fail();
  }
}

void keepAttributes(const FileInformation& from, const Handle& to) {
  constexpr DWORD kept = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
  FILE_BASIC_INFO information{};  // a time of 0 stays as it is
  information.LastWriteTime.LowPart = from.ftLastWriteTime.dwLowDateTime;
  information.LastWriteTime.HighPart = static_cast<LONG>(from.ftLastWriteTime.dwHighDateTime);
  information.FileAttributes = FILE_ATTRIBUTE_ARCHIVE | (from.dwFileAttributes & kept);
  checked(::SetFileInformationByHandle(to.get(), FileBasicInfo, &information, sizeof information));
}

void allowRemoval(const std::wstring& name) {
  const DWORD attributes = ::GetFileAttributesW(name.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
    checked(::SetFileAttributesW(name.c_str(), attributes & ~DWORD{FILE_ATTRIBUTE_READONLY}));
  }
}

// A copy of a file that is protected against writing is so as well, and could not be removed.
void unprotect(const Handle& file) {
  FileInformation state{};
  if (::GetFileInformationByHandle(file.get(), &state) == FALSE || !isProtected(state)) return;
  FILE_BASIC_INFO removable{};
  removable.FileAttributes = FILE_ATTRIBUTE_NORMAL;
  ::SetFileInformationByHandle(file.get(), FileBasicInfo, &removable, sizeof removable);
}

}  // namespace kova::native
