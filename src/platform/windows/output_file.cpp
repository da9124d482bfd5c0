// SPDX-License-Identifier: MIT
// What becomes of a temporary file, and of the file whose place it takes.
#include "platform/output_file.h"

#include "platform/native_files.h"
#include "platform/windows/file_state.h"

namespace kova::native {

const bool temporaryFilesArePrivate = false;

namespace {

// A scanner that looks at a new file is waited for: half a second in all.
constexpr int moveAttempts = 50;
constexpr DWORD pause = 10;

bool mayPass(DWORD error) {
  return error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED;
}

// 0, or the error that stays. Windows calls the replacement of an open file a lack of permission.
DWORD renamed(const std::wstring& from, const std::wstring& to, DWORD flags) {
  for (int attempt = 1; ::MoveFileExW(from.c_str(), to.c_str(), flags) == FALSE; ++attempt) {
    const DWORD error = ::GetLastError();
    if (mayPass(error) && attempt < moveAttempts) {
      ::Sleep(pause);
      continue;
    }
    // Windows calls it anything.
    if (to.size() - to.rfind(L'\\') - 1 > usualNameLimit) return ERROR_FILENAME_EXCED_RANGE;
    const bool isHeld = mayPass(error) && !openFile(to, DELETE, shareAll).open() &&
                        ::GetLastError() == ERROR_SHARING_VIOLATION;
    return isHeld ? ERROR_SHARING_VIOLATION : error;
  }
  return 0;
}

}  // namespace

// Nobody else can write or lock it as long as it is open.
Handle makeTemporaryFile(const Path& name) {
  constexpr DWORD access = GENERIC_READ | GENERIC_WRITE;
  constexpr DWORD share = FILE_SHARE_READ | FILE_SHARE_DELETE;
  constexpr DWORD flags = FILE_FLAG_OPEN_REPARSE_POINT;
  Handle file = openFile(nameOf(name), access, share, CREATE_NEW, flags);
  if (file.open()) return file;
  const DWORD error = ::GetLastError();
  if (error != ERROR_FILE_EXISTS && error != ERROR_ALREADY_EXISTS) fail(error);
  return file;
}

bool hasName(const Handle& file, const Path& name) {
  const Handle named = openFile(nameOf(name), FILE_READ_ATTRIBUTES, shareAll, OPEN_EXISTING,
                                FILE_FLAG_OPEN_REPARSE_POINT);
  if (!named.open() && meansAbsent(::GetLastError())) return false;
  if (!named.open()) fail();
  const FileState one = asFileState(stateOf(named));
  const FileState other = asFileState(stateOf(file));
  return one.device == other.device && one.inode == other.inode;
}

void rename(const Handle& /*file*/, const Path& from, const Path& to) {
  constexpr DWORD flags = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
  if (const DWORD error = renamed(nameOf(from), nameOf(to), flags); error != 0) fail(error);
}

bool renameToFreeName(const Handle& /*file*/, const Path& from, const Path& to) {
  const DWORD error = renamed(nameOf(from), nameOf(to), MOVEFILE_WRITE_THROUGH);
  if (error == ERROR_ALREADY_EXISTS || error == ERROR_FILE_EXISTS) return false;
  if (error != 0) fail(error);
  return true;
}

void removeTemporaryFile(const Handle& file, const Path& name) {
  unprotect(file);
  ::DeleteFileW(nameOf(name).c_str());
}

void removeIfStale(const Path& temporary) {
  constexpr DWORD access = DELETE | READ_CONTROL | FILE_READ_ATTRIBUTES | FILE_WRITE_ATTRIBUTES;
  // Nobody else has open what can be opened without sharing it.
  const Handle file =
      openFile(nameOf(temporary), access, 0, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT);
  FileInformation state{};
  if (!file.open() || ::GetFileInformationByHandle(file.get(), &state) == FALSE) return;
  const bool isLink = (state.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
  if (isLink || !isPlainFile(state) || state.nNumberOfLinks != 1) return;
  if (!isOwn(file)) return;
  unprotect(file);
  FILE_DISPOSITION_INFO goes{TRUE};
  ::SetFileInformationByHandle(file.get(), FileDispositionInfo, &goes, sizeof goes);
}

Path withoutLink(const Path& path) {
  const std::wstring name = nameOf(path);
  const DWORD attributes = ::GetFileAttributesW(name.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
    return {native::narrow(name)};
  }
  const Handle file = openFile(name, 0, shareAll, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
  if (!file.open()) throw Failure("The link points to a file that does not exist");
  std::wstring target(::GetFinalPathNameByHandleW(file.get(), nullptr, 0, 0), L'\0');
  const auto size = static_cast<DWORD>(target.size());
  target.resize(::GetFinalPathNameByHandleW(file.get(), target.data(), size, 0));
  return {native::narrow(target.empty() ? name : target)};
}

void checkMayBeReplaced(const Path& target) {
  const auto former = stateOf(nameOf(target));
  if (!former) return;
  if (isFolder(*former)) throw Failure("Is a directory");
  if (!isPlainFile(*former)) throw Failure("Not a plain file");
  if (isProtected(*former)) fail(ERROR_ACCESS_DENIED);
  // Another program that has it open may be done by the time it is replaced.
  const auto check = [](const Handle& writable) {
    if (!writable.open() && ::GetLastError() != ERROR_SHARING_VIOLATION) fail();
  };
  check(openFile(nameOf(target), GENERIC_WRITE, shareAll));
  check(openFolder(target.parent(), FILE_ADD_FILE));
}

std::optional<FileState> targetState(const Path& target) {
  return state(target);
}

Handle openTarget(const Path& target) {
  return openFile(nameOf(target), GENERIC_READ, shareAll);
}

void keepPermissions(const Path& target, NewFileMode /*newFileMode*/, const TemporaryFile& next) {
  auto state = stateOf(nameOf(target));
  if (!state) return;
  keepAccessList(nameOf(target), nameOf(next.name()));
  state->ftLastWriteTime = {};  // it is written now
  keepAttributes(*state, next.file());
}

}  // namespace kova::native
