// SPDX-License-Identifier: MIT
#include <algorithm>
#include <new>

#include "platform/machine.h"
#include "platform/read_file.h"
#include "platform/temporary_name.h"
#include "platform/windows/output_file.h"

namespace kova {

namespace {

using windows::checked;
using windows::fail;
using windows::FileState;
using windows::Handle;
using windows::HiddenFile;
using windows::nameOf;
using windows::narrow;
using windows::openFile;
using windows::openFolder;
using windows::shareAll;
using windows::sizeOf;
using windows::stampOf;
using windows::stateOf;
using windows::wide;

constexpr DWORD pause = 10;
constexpr int lockAttempts = 300;
// What is just being removed is denied for a moment; a folder that is, stays so.
constexpr int deniedAttempts = 20;

bool isFolder(const FileState& state) {
  return (state.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

Handle openPlainFile(const std::wstring& name) {
  if (const auto state = stateOf(name); state && isFolder(*state)) throw Failure("Is a directory");
  Handle file = openFile(name, GENERIC_READ, shareAll);
  if (!file.open()) fail();
  if (::GetFileType(file.get()) != FILE_TYPE_DISK) throw Failure("Not a plain file");
  return file;
}

std::size_t readSome(const Handle& file, char* into, std::size_t size) {
  DWORD count = 0;
  checked(::ReadFile(file.get(), into, static_cast<DWORD>(size), &count, nullptr));
  return count;
}

std::string readWhole(const std::wstring& name) {
  const Handle source = openPlainFile(name);
  return allOf(sizeOf(stateOf(source)),
               [&](char* into, std::size_t size) { return readSome(source, into, size); });
}

// A copy that has its temporary name still.
std::unique_ptr<HiddenFile> hiddenCopy(const Path& from, const Path& to, FileState& state) {
  const std::wstring name = nameOf(from);
  const Handle source = openPlainFile(name);
  state = stateOf(source);
  auto hidden = std::make_unique<HiddenFile>(to.parent(), from.leaf());
  windows::keepAccessList(name, hidden->name());
  std::string buffer(
      static_cast<std::size_t>(std::min<std::uint64_t>(sizeOf(state) + 1, readAhead)), '\0');
  while (const std::size_t count = readSome(source, buffer.data(), buffer.size())) {
    hidden->write({buffer.data(), count});
  }
  windows::keepAttributes(state, hidden->handle());
  return hidden;
}

// Runs `look` for each entry of the folder.
template <class Look>
void lookThrough(const Path& folder, Check visit) {
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

// A file that Windows removes with its handle, however the program ends.
class WindowsFolderLock final : public FolderLock {
 public:
  explicit WindowsFolderLock(Handle file) : file_(std::move(file)) {}

 private:
  Handle file_;
};

class WindowsFileSystem final : public FileSystem {
 public:
  explicit WindowsFileSystem(const CodePage& codePage) : codePage_(codePage) {}

  Path path(std::string_view text) const override {
    if (text.empty()) throw Failure("The name is empty");
    if (text.find('\0') != std::string_view::npos) throw Failure("The name holds a NUL");
    std::string native = codePage_.toNative(text);
    std::replace(native.begin(), native.end(), '/', pathSeparator);
    return {native};
  }

  std::string text(std::string_view native) const override { return codePage_.fromNative(native); }

  bool fileExists(const Path& file) const override { return state(file).has_value(); }

  bool folderExists(const Path& folder) const override {
    const auto state = stateOf(nameOf(folder));
    return state && isFolder(*state);
  }

  std::string read(const Path& file) const override {
    try {
      return readWhole(nameOf(file));
    } catch (const std::bad_alloc&) {
      throw Failure("not enough memory");
    }
  }

  std::unique_ptr<OutputFile> create(const Path& file) override {
    return windows::openOutputFile(file, windows::Hidden::atOnce);
  }

  std::unique_ptr<OutputFile> createLate(const Path& file) override {
    return windows::openOutputFile(file, windows::Hidden::onceItIsNeeded);
  }

  void createFolder(const Path& folder) override {
    checked(::CreateDirectoryW(nameOf(folder).c_str(), nullptr));
    const auto end = folder.native.find_last_not_of(pathSeparator) + 1;
    flush(Path{folder.native.substr(0, end)}.parent());
  }

  void copy(const Path& from, const Path& to) override {
    FileState state{};
    const auto hidden = hiddenCopy(from, to, state);
    const std::wstring target = nameOf(to);
    // `flushAll` can't reach what is protected against writing.
    const bool isProtected = (state.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0;
    if (isProtected || stateOf(target)) hidden->flush();
    windows::allowRemoval(target);
    hidden->takePlaceOf(target);
  }

  bool copyAside(const Path& from, const Path& to) override {
    FileState state{};
    const auto hidden = hiddenCopy(from, to, state);
    hidden->flush();
    if (!hidden->takeFreePlace(nameOf(to))) return false;
    flush(to.parent());
    return true;
  }

  void remove(const Path& file) override {
    const std::wstring name = nameOf(file);
    windows::allowRemoval(name);
    checked(::DeleteFileW(name.c_str()));
  }

  std::vector<std::string> plainFiles(const Path& folder) const override {
    constexpr DWORD notListed = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE |
                                FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
    std::vector<std::string> names;
    lookThrough(folder, [&](const WIN32_FIND_DATAW& entry) {
      if ((entry.dwFileAttributes & notListed) != 0 || entry.cFileName[0] == L'.') return;
      std::string name = narrow(entry.cFileName);
      const bool isLink = (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
      if (!isLink || leadsToFile(folder / name)) names.push_back(std::move(name));
    });
    std::sort(names.begin(), names.end());
    return names;
  }

  std::optional<FileState> state(const Path& file) const override {
    return stampOf(stateOf(nameOf(file)));
  }

  bool nameFits(const Path& folder, std::string_view name) const override {
    if (name.empty() || wide(name).size() > nameLimit(folder)) return false;
    if (::GetFileAttributesW(nameOf(folder / name).c_str()) != INVALID_FILE_ATTRIBUTES) return true;
    const DWORD error = ::GetLastError();
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND ||
           error == ERROR_ACCESS_DENIED;
  }

  std::string withoutCase(std::string_view name) const override {
    std::string capitals(name);
    for (char& letter : capitals) letter = codePage_.capital(letter);
    return capitals;
  }

  bool ignoresCase(const Path& folder) const override {
    const HiddenFile hidden(folder, "case");
    const Path other = folder / withoutCase(Path{narrow(hidden.name())}.leaf());
    return stampOf(stateOf(nameOf(other))) == stampOf(stateOf(hidden.handle()));
  }

  std::unique_ptr<FolderLock> lock(const Path& folder) override {
    const std::wstring name = nameOf(folder / ".kova-lock");
    // Of a link the link goes, not the file that it leads to.
    constexpr DWORD flags = FILE_FLAG_DELETE_ON_CLOSE | FILE_FLAG_OPEN_REPARSE_POINT;
    int denied = 0;
    for (int attempt = 0; attempt < lockAttempts; ++attempt) {
      Handle file = openFile(name, GENERIC_WRITE, 0, OPEN_ALWAYS, flags);
      if (file.open()) return std::make_unique<WindowsFolderLock>(std::move(file));
      const DWORD error = ::GetLastError();
      const bool isHeld = error == ERROR_SHARING_VIOLATION ||
                          (error == ERROR_ACCESS_DENIED && ++denied < deniedAttempts);
      if (!isHeld) return std::make_unique<FolderLock>();
      ::Sleep(pause);
    }
    return nullptr;
  }

  // All of a drive at once is the administrator's to flush.
  void flushAll(const Path& folder) override {
    for (const auto& name : plainFiles(folder)) {
      // What this account can't write it has not written, but for a copy, which is flushed already.
      const Handle file = openFile(nameOf(folder / name), GENERIC_WRITE, shareAll);
      if (file.open()) checked(::FlushFileBuffers(file.get()));
    }
    flush(folder);
  }

  void removeStaleTemporaryFiles(const Path& folder) override {
    try {
      lookThrough(folder, [&](const WIN32_FIND_DATAW& entry) {
        const std::string name = narrow(entry.cFileName);
        if (isHiddenName(name)) windows::removeIfLeft(nameOf(folder / name));
      });
    } catch (const Failure&) {
      return;  // what can't be looked through keeps what it holds
    }
  }

 private:
  // A link may lead round in a circle, or to where this account may not go.
  bool leadsToFile(const Path& link) const {
    const Handle file = openFile(nameOf(link), FILE_READ_ATTRIBUTES, shareAll);
    const DWORD error = file.open() ? ERROR_SUCCESS : ::GetLastError();
    const bool leadsNowhere = error == ERROR_ACCESS_DENIED || error == ERROR_CANT_ACCESS_FILE ||
                              error == ERROR_CANT_RESOLVE_FILENAME;
    return !leadsNowhere && fileExists(link);
  }

  static DWORD nameLimit(const Path& folder) {
    constexpr DWORD usual = 255;
    std::wstring volume(MAX_PATH + folder.native.size(), L'\0');
    DWORD limit = usual;
    if (::GetVolumePathNameW(nameOf(folder).c_str(), volume.data(),
                             static_cast<DWORD>(volume.size())) == FALSE)
      return usual;
    ::GetVolumeInformationW(volume.c_str(), nullptr, 0, nullptr, &limit, nullptr, nullptr, 0);
    return limit;
  }

  // Renames are written through; this brings the folder's own journal to the disk, where there is
  // one and the account may.
  static void flush(const Path& folder) {
    const Handle names = openFolder(folder, GENERIC_WRITE);
    if (names.open()) ::FlushFileBuffers(names.get());
  }

  const CodePage& codePage_;
};

}  // namespace

std::unique_ptr<FileSystem> realFileSystem(const CodePage& codePage) {
  return std::make_unique<WindowsFileSystem>(codePage);
}

}  // namespace kova
