// SPDX-License-Identifier: MIT
// Imports of the system's libraries by the names under which the linker takes them from here. Calls
// are noted by what they do, in the words of the C library. Of a write that is struck, half
// arrives.
#include <windows.h>

#include <cerrno>
#include <map>

#include "platform/windows/calls.h"
#include "reliability/system_calls.h"

namespace kova::test {

const CallsOfARun callsOfARun{.kinds = 11, .silent = {"fchmod", "opendir", "setxattr", "unlink"}};

namespace {

/// Paths of what is open, as the wizard has opened it.
std::map<HANDLE, std::string>& opened() {
  static std::map<HANDLE, std::string> paths;
  return paths;
}

std::string pathOf(const wchar_t* name) {
  return native::narrow(name);
}

std::string pathOf(HANDLE file) {
  return opened()[file];
}

template <class Result>
Result keep(SystemCalls::Call* noted, Result result) {
  if (noted != nullptr) noted->done = result != Result{};
  return result;
}

int fail() {
  ::SetLastError(systemCalls().error == ENOSPC ? ERROR_DISK_FULL : ERROR_WRITE_FAULT);
  return FALSE;
}

template <class Result, class... Arguments>
Result pass(const char* name, Arguments... arguments) {
  static const HMODULE libraries[] = {::GetModuleHandleW(L"kernel32"), ::LoadLibraryW(L"advapi32")};
  FARPROC function = ::GetProcAddress(libraries[0], name);
  if (function == nullptr) function = ::GetProcAddress(libraries[1], name);
  using Function = Result(WINAPI*)(Arguments...);
  return reinterpret_cast<Function>(reinterpret_cast<void*>(function))(arguments...);
}

/// A call that is true once it is done, on a file that its first argument names or has open.
template <class File, class... Arguments>
BOOL call(const char* kind, const char* name, File file, Arguments... arguments) {
  SystemCalls::Call* const noted = note(kind, pathOf(file));
  return strikes(noted) ? fail() : keep(noted, pass<BOOL>(name, file, arguments...));
}

HANDLE WINAPI createFile(const wchar_t* name, DWORD access, DWORD share,
                         SECURITY_ATTRIBUTES* permissions, DWORD how, DWORD flags, HANDLE like) {
  const bool looks = access == FILE_READ_ATTRIBUTES;
  if (strikes(note(looks ? "stat" : "open", pathOf(name)))) {
    fail();
    return INVALID_HANDLE_VALUE;
  }
  const auto file = pass<HANDLE>("CreateFileW", name, access, share, permissions, how, flags, like);
  opened()[file] = pathOf(name);
  return file;
}
HANDLE WINAPI findFirstFile(const wchar_t* name, WIN32_FIND_DATAW* entry) {
  if (!strikes(note("opendir", pathOf(name)))) return pass<HANDLE>("FindFirstFileW", name, entry);
  fail();
  return INVALID_HANDLE_VALUE;
}
BOOL WINAPI readFile(HANDLE file, void* data, DWORD size, DWORD* count, OVERLAPPED* place) {
  return call("read", "ReadFile", file, data, size, count, place);
}
BOOL WINAPI writeFile(HANDLE file, const void* data, DWORD size, DWORD* count, OVERLAPPED* place) {
  const bool fails = strikes(note("write", pathOf(file)));
  const BOOL written = pass<BOOL>("WriteFile", file, data, fails ? size / 2 : size, count, place);
  return fails ? fail() : written;
}
BOOL WINAPI flushFileBuffers(HANDLE file) {
  return strikes(note("fsync", pathOf(file))) ? fail() : TRUE;
}
BOOL WINAPI setInformation(HANDLE file, FILE_INFO_BY_HANDLE_CLASS kind, void* data, DWORD size) {
  return call(kind == FileDispositionInfo ? "unlink" : "fchmod", "SetFileInformationByHandle", file,
              kind, data, size);
}
BOOL WINAPI setFileSecurity(const wchar_t* name, SECURITY_INFORMATION kind, void* permissions) {
  return call("setxattr", "SetFileSecurityW", name, kind, permissions);
}
BOOL WINAPI setFileAttributes(const wchar_t* name, DWORD attributes) {
  return call("chmod", "SetFileAttributesW", name, attributes);
}
BOOL WINAPI moveFile(const wchar_t* from, const wchar_t* to, DWORD flags) {
  return call("rename", "MoveFileExW", from, to, flags);
}
BOOL WINAPI deleteFile(const wchar_t* name) {
  return call("unlink", "DeleteFileW", name);
}
BOOL WINAPI createDirectory(const wchar_t* name, SECURITY_ATTRIBUTES* permissions) {
  return call("mkdir", "CreateDirectoryW", name, permissions);
}

}  // namespace

extern "C" {
auto* __imp_CreateFileW = &createFile;
auto* __imp_FindFirstFileW = &findFirstFile;
auto* __imp_ReadFile = &readFile;
auto* __imp_WriteFile = &writeFile;
auto* __imp_FlushFileBuffers = &flushFileBuffers;
auto* __imp_SetFileInformationByHandle = &setInformation;
auto* __imp_SetFileSecurityW = &setFileSecurity;
auto* __imp_SetFileAttributesW = &setFileAttributes;
auto* __imp_MoveFileExW = &moveFile;
auto* __imp_DeleteFileW = &deleteFile;
auto* __imp_CreateDirectoryW = &createDirectory;
}

}  // namespace kova::test
