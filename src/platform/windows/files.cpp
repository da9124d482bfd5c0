// SPDX-License-Identifier: MIT
#include <algorithm>

#include "platform/machine.h"
#include "platform/native_files.h"
#include "platform/windows/file_state.h"

namespace kova {

namespace native {

namespace {

constexpr DWORD pause = 10;
constexpr int lockAttempts = 300;
// What is just being removed is denied for a moment; a folder that is, stays so.
constexpr int deniedAttempts = 20;

// Runs `visit` for each entry of the folder.
template <class Visit>
void forEachEntry(const Path& folder, Visit visit) {
  WIN32_FIND_DATAW entry{};
  const HANDLE entries = ::FindFirstFileW(nameOf(folder / "*").c_str(), &entry);
  if (entries == INVALID_HANDLE_VALUE) {
    // The root of an empty drive has not even an entry for itself.
    if (::GetLastError() == ERROR_FILE_NOT_FOUND) return;
    fail();
  }
  const std::unique_ptr<void, decltype(&::FindClose)> close(entries, &::FindClose);
  do visit(entry);
  while (::FindNextFileW(entries, &entry) != FALSE);
  if (::GetLastError() != ERROR_NO_MORE_FILES) fail();
}

// A link may lead round in a circle, or to where this account may not go.
bool leadsToFile(const Path& link) {
  const Handle file = openFile(nameOf(link), FILE_READ_ATTRIBUTES, shareAll);
  const DWORD error = file.open() ? ERROR_SUCCESS : ::GetLastError();
  const bool leadsNowhere = error == ERROR_ACCESS_DENIED || error == ERROR_CANT_ACCESS_FILE ||
                            error == ERROR_CANT_RESOLVE_FILENAME;
  return !leadsNowhere && state(link).has_value();
}

}  // namespace

std::optional<FileState> state(const Path& file) {
  const auto state = stateOf(nameOf(file));
  if (!state || !isPlainFile(*state)) return std::nullopt;
  return asFileState(*state);
}

bool isFolder(const Path& path) {
  const auto state = stateOf(nameOf(path));
  return state && isFolder(*state);
}

Source openPlainFile(const Path& file) {
  if (isFolder(file)) throw Failure("Is a directory");
  Handle open = openFile(nameOf(file), GENERIC_READ, shareAll);
  if (!open.open()) fail();
  if (::GetFileType(open.get()) != FILE_TYPE_DISK) throw Failure("Not a plain file");
  const std::uint64_t bytes = asFileState(stateOf(open)).bytes;
  return {std::move(open), bytes};
}

std::size_t readSome(const Handle& file, char* into, std::size_t size) {
  DWORD count = 0;
  checked(::ReadFile(file.get(), into, static_cast<DWORD>(size), &count, nullptr));
  return count;
}

void write(const Handle& file, std::string_view content) {
  constexpr std::size_t most = std::size_t{1} << 30U;
  while (!content.empty()) {
    DWORD written = 0;
    const auto size = static_cast<DWORD>(std::min(content.size(), most));
    checked(::WriteFile(file.get(), content.data(), size, &written, nullptr));
    if (written == 0) fail(ERROR_DISK_FULL);
    content.remove_prefix(written);
  }
}

void flush(const Handle& file) {
  checked(::FlushFileBuffers(file.get()));
}

void remove(const Path& file) {
  allowRemoval(nameOf(file));
  checked(::DeleteFileW(nameOf(file).c_str()));
}

void copy(const Path& from, const Path& to) {
  const auto copy = temporaryCopy(from, to);
  // `flushAll` can't reach what is protected against writing.
  if (isProtected(stateOf(copy->file())) || stateOf(nameOf(to))) flush(copy->file());
  allowRemoval(nameOf(to));
  copy->replace(to);
}

void fillCopy(const Path& from, const Source& source, const TemporaryFile& copy) {
  const FileInformation state = stateOf(source.file);
  keepAccessList(nameOf(from), nameOf(copy.name()));
  const auto room = std::min<std::uint64_t>(source.bytes + 1, readAhead);
  std::string buffer(static_cast<std::size_t>(room), '\0');
  while (const std::size_t count = readSome(source.file, buffer.data(), buffer.size())) {
    write(copy.file(), {buffer.data(), count});
  }
  keepAttributes(state, copy.file());
}

void createFolder(const Path& folder, const Path& parent) {
  checked(::CreateDirectoryW(nameOf(folder).c_str(), nullptr));
  flushNames(parent);
}

std::vector<std::string> plainFiles(const Path& folder) {
  constexpr DWORD notListed = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE |
                              FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
  std::vector<std::string> names;
  forEachEntry(folder, [&](const WIN32_FIND_DATAW& entry) {
    if ((entry.dwFileAttributes & notListed) != 0 || entry.cFileName[0] == L'.') return;
    std::string name = narrow(entry.cFileName);
    const bool isLink = (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    if (!isLink || leadsToFile(folder / name)) names.push_back(std::move(name));
  });
  std::sort(names.begin(), names.end());
  return names;
}

void forEachName(const Path& folder, const std::function<void(const std::string&)>& action) {
  forEachEntry(folder, [&](const WIN32_FIND_DATAW& entry) { action(narrow(entry.cFileName)); });
}

// A file that Windows removes with its handle, however the program ends.
std::optional<Handle> lock(const Path& folder) {
  const std::wstring name = nameOf(folder / ".kova-lock");
  // Of a link the link goes, not the file that it leads to.
  constexpr DWORD flags = FILE_FLAG_DELETE_ON_CLOSE | FILE_FLAG_OPEN_REPARSE_POINT;
  int denied = 0;
  for (int attempt = 0; attempt < lockAttempts; ++attempt) {
    Handle file = openFile(name, GENERIC_WRITE, 0, OPEN_ALWAYS, flags);
    if (file.open()) return file;
    const DWORD error = ::GetLastError();
    const bool isHeld = error == ERROR_SHARING_VIOLATION ||
                        (error == ERROR_ACCESS_DENIED && ++denied < deniedAttempts);
    if (!isHeld) return file;
    ::Sleep(pause);
  }
  return std::nullopt;
}

// Renames are written through; this brings the folder's own journal to the disk, where there is one
// and the account may.
void flushNames(const Path& folder) {
  const Handle names = openFolder(folder, GENERIC_WRITE);
  if (names.open()) ::FlushFileBuffers(names.get());
}

// All of a drive at once is the administrator's to flush.
void flushAll(const Path& folder) {
  for (const auto& name : plainFiles(folder)) {
    // What this account can't write it has not written, but for a copy, which is flushed already.
    const Handle file = openFile(nameOf(folder / name), GENERIC_WRITE, shareAll);
    if (file.open()) flush(file);
  }
  flushNames(folder);
}

}  // namespace native

std::unique_ptr<FileSystem> realFileSystem(const CodePage& codePage) {
  return native::fileSystem(codePage, NewFileMode{});
}

}  // namespace kova
