// SPDX-License-Identifier: MIT
// What Windows tells of a file or folder, and who may do what with it.
#pragma once

#include <optional>

#include "platform/windows/calls.h"

namespace kova::native {

/// Others may read, write, rename and remove what is open.
inline constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// A handle that is not open if the call fails; GetLastError tells why.
Handle openFile(const std::wstring& name, DWORD access, DWORD share, DWORD how = OPEN_EXISTING,
                DWORD flags = 0);

/// A name that the system can't even take is that of no file. A network or a disk that does not
/// answer is no absence.
bool meansAbsent(DWORD error);
Handle openFolder(const Path& folder, DWORD access);

using FileInformation = BY_HANDLE_FILE_INFORMATION;
/// State of a file or folder, links followed; nothing if there is none. Throws Failure if that
/// can't be told.
std::optional<FileInformation> stateOf(const std::wstring& name);
FileInformation stateOf(const Handle& file);
bool isFolder(const FileInformation& state);
bool isPlainFile(const FileInformation& state);
bool isProtected(const FileInformation& state);
FileState asFileState(const FileInformation& state);

/// The file belongs to this account, or lies on a disk that knows no owners.
bool isOwn(const Handle& file);
/// Throws Failure if the file keeps no access list of another one although it could.
void keepAccessList(const std::wstring& from, const std::wstring& to);
/// Sets time and attributes as those of `from`: who may write it, who is shown it.
void keepAttributes(const FileInformation& from, const Handle& to);
/// A file that is protected against writing can be removed and replaced behind this.
void allowRemoval(const std::wstring& name);
/// As well, but nothing happens if that is not possible.
void unprotect(const Handle& file);

}  // namespace kova::native
