// SPDX-License-Identifier: MIT
#include "platform/windows/output_file.h"

#include <bcrypt.h>

#include <algorithm>
#include <array>
#include <vector>

#include "platform/temporary_name.h"

namespace kova::windows {

namespace {

constexpr std::size_t nameLimit = 255;  // in UTF-16 units
// A scanner that looks at a new file is waited for: half a second in all.
constexpr int moveAttempts = 50;
constexpr DWORD pause = 10;

std::wstring temporaryPath(const Path& folder, std::string_view leaf) {
  std::wstring beginning = wide(leaf).substr(0, roomInTemporaryName(nameLimit));
  // No half character.
  if (!beginning.empty() && IS_HIGH_SURROGATE(beginning.back())) beginning.pop_back();
  std::uint64_t random = 0;
  auto* const bytes = reinterpret_cast<UCHAR*>(&random);
  if (::BCryptGenRandom(nullptr, bytes, sizeof random, BCRYPT_USE_SYSTEM_PREFERRED_RNG) != 0) {
    throw Failure("The system gives no random number");
  }
  return nameOf(folder / temporaryName(narrow(beginning), random));
}

// A name that the system can't even take is that of no file. A network or a disk that does not
// answer is no absence.
bool meansAbsent(DWORD error) {
  return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND ||
         error == ERROR_DIRECTORY || error == ERROR_INVALID_NAME;
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

// Also a file on a disk that knows no owners.
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

bool meansNotHere(DWORD error) {
  return error == ERROR_NOT_SUPPORTED || error == ERROR_INVALID_FUNCTION ||
         error == ERROR_CALL_NOT_IMPLEMENTED;
}

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
    if (to.size() - to.rfind(L'\\') - 1 > nameLimit) return ERROR_FILENAME_EXCED_RANGE;
    const bool isHeld = mayPass(error) && !openFile(to, DELETE, shareAll).open() &&
                        ::GetLastError() == ERROR_SHARING_VIOLATION;
    return isHeld ? ERROR_SHARING_VIOLATION : error;
  }
  return 0;
}

// The file that a link leads to; the name itself if it is no link.
std::wstring withoutLink(const std::wstring& name) {
  const DWORD attributes = ::GetFileAttributesW(name.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
    return name;
  }
  const Handle file = openFile(name, 0, shareAll, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
  if (!file.open()) throw Failure("The link points to a file that does not exist");
  std::wstring target(::GetFinalPathNameByHandleW(file.get(), nullptr, 0, 0), L'\0');
  const auto size = static_cast<DWORD>(target.size());
  target.resize(::GetFinalPathNameByHandleW(file.get(), target.data(), size, 0));
  return target.empty() ? name : target;
}

// What can't be read holds something else.
bool holds(const std::wstring& name, std::string_view content) {
  const Handle file = openFile(name, GENERIC_READ, shareAll);
  if (!file.open()) return false;
  std::array<char, 16384> chunk{};
  for (;;) {
    DWORD count = 0;
    if (::ReadFile(file.get(), chunk.data(), chunk.size(), &count, nullptr) == FALSE) return false;
    if (count == 0) return content.empty();
    const std::string_view read(chunk.data(), count);
    if (!content.starts_with(read)) return false;
    content.remove_prefix(count);
  }
}

// A copy of a file that is protected against writing is so as well, and could not be removed.
void unprotect(const Handle& file, const FileState& state) {
  if ((state.dwFileAttributes & FILE_ATTRIBUTE_READONLY) == 0) return;
  FILE_BASIC_INFO removable{};
  removable.FileAttributes = FILE_ATTRIBUTE_NORMAL;
  ::SetFileInformationByHandle(file.get(), FileBasicInfo, &removable, sizeof removable);
}

std::uint64_t joined(DWORD high, DWORD low) {
  return (std::uint64_t{high} << 32U) | low;
}

class WindowsOutputFile final : public OutputFile {
 public:
  WindowsOutputFile(Path target, Hidden made) : target_(std::move(target)) {
    if (made == Hidden::atOnce) hide();
  }

  void write(std::string_view content) override {
    flushed_ = false;
    content_ += content;
    if (hidden_) hidden_->write(content);
  }

  void flush() override {
    former_ = stampOf(stateOf(name_));
    targetStays_ = former_ && former_->bytes == content_.size() && holds(name_, content_);
    if (!targetStays_) {
      if (hidden_) {
        keepPermissions();
      } else {
        hide();
      }
      hidden_->flush();
    }
    flushed_ = true;
  }

  void close() override {
    if (targetStays_ && former_ != stampOf(stateOf(name_))) flushed_ = false;
    if (!flushed_) flush();
    if (!targetStays_) hidden_->takePlaceOf(name_);
    hidden_.reset();
  }

 private:
  void hide() {
    hidden_.emplace(target_.parent(), target_.leaf());
    // Ahead of the content: nobody is to read it meanwhile who may not read it afterwards.
    keepPermissions();
    hidden_->write(content_);
  }

  void keepPermissions() const {
    const auto former = stateOf(name_);
    if (!former) return;
    keepAccessList(name_, hidden_->name());
    FileState state = *former;
    state.ftLastWriteTime = {};  // it is written now
    keepAttributes(state, hidden_->handle());
  }

  Path target_;
  std::wstring name_ = nameOf(target_);
  std::string content_;
  std::optional<HiddenFile> hidden_;  ///< holds the content, once it is there
  std::optional<FileState> former_;   ///< of the target, at the flush
  bool targetStays_ = false;          ///< since it holds the content already
  bool flushed_ = false;
};

}  // namespace

Handle openFile(const std::wstring& name, DWORD access, DWORD share, DWORD how, DWORD flags) {
  return Handle(::CreateFileW(name.c_str(), access, share, nullptr, how,
                              FILE_ATTRIBUTE_NORMAL | flags, nullptr));
}

Handle openFolder(const Path& folder, DWORD access) {
  const std::wstring name = folder.native.empty() ? L"." : nameOf(folder);
  return openFile(name, access, shareAll, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
}

std::optional<FileState> stateOf(const std::wstring& name) {
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

FileState stateOf(const Handle& file) {
  FileState state{};
  checked(::GetFileInformationByHandle(file.get(), &state));
  return state;
}

std::uint64_t sizeOf(const FileState& state) {
  return joined(state.nFileSizeHigh, state.nFileSizeLow);
}

std::optional<FileState> stampOf(const std::optional<FileState>& state) {
  if (!state || !isPlainFile(*state)) return std::nullopt;
  // Windows counts tenths of a microsecond since 1601.
  constexpr std::int64_t since1970 = 116'444'736'000'000'000;
  const auto& written = state->ftLastWriteTime;
  const auto time =
      static_cast<std::int64_t>(joined(written.dwHighDateTime, written.dwLowDateTime));
  return FileState{state->dwVolumeSerialNumber, joined(state->nFileIndexHigh, state->nFileIndexLow),
                   sizeOf(*state), (time - since1970) * 100};
}

bool isPlainFile(const FileState& state) {
  constexpr DWORD others = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE;
  return (state.dwFileAttributes & others) == 0;
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

void keepAttributes(const FileState& from, const Handle& to) {
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

HiddenFile::HiddenFile(const Path& folder, std::string_view leaf) {
  constexpr DWORD access = GENERIC_READ | GENERIC_WRITE;
  constexpr DWORD share = FILE_SHARE_READ | FILE_SHARE_DELETE;
  for (int name = 0; name < temporaryNames; ++name) {
    name_ = temporaryPath(folder, leaf);
    file_ = openFile(name_, access, share, CREATE_NEW, FILE_FLAG_OPEN_REPARSE_POINT);
    if (file_.open()) return;
    const DWORD error = ::GetLastError();
    if (error != ERROR_FILE_EXISTS && error != ERROR_ALREADY_EXISTS) fail(error);
  }
  throw Failure(noTemporaryName);
}

HiddenFile::~HiddenFile() {
  if (!file_.open() || !isStillNamed()) return;
  FileState state{};
  if (::GetFileInformationByHandle(file_.get(), &state) != FALSE) unprotect(file_, state);
  ::DeleteFileW(name_.c_str());
}

bool HiddenFile::isStillNamed() const {
  const Handle named =
      openFile(name_, FILE_READ_ATTRIBUTES, shareAll, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT);
  FileState state{};
  FileState own{};
  if (!named.open() || ::GetFileInformationByHandle(named.get(), &state) == FALSE ||
      ::GetFileInformationByHandle(file_.get(), &own) == FALSE) {
    return false;
  }
  return state.dwVolumeSerialNumber == own.dwVolumeSerialNumber &&
         state.nFileIndexHigh == own.nFileIndexHigh && state.nFileIndexLow == own.nFileIndexLow;
}

void HiddenFile::checkName() const {
  if (!isStillNamed()) throw Failure("The temporary file has been taken away");
}

void HiddenFile::write(std::string_view content) const {
  constexpr std::size_t most = std::size_t{1} << 30U;
  while (!content.empty()) {
    DWORD written = 0;
    const auto size = static_cast<DWORD>(std::min(content.size(), most));
    checked(::WriteFile(file_.get(), content.data(), size, &written, nullptr));
    if (written == 0) fail(ERROR_DISK_FULL);
    content.remove_prefix(written);
  }
}

void HiddenFile::takePlaceOf(const std::wstring& target) {
  constexpr DWORD flags = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
  checkName();
  if (const DWORD error = renamed(name_, target, flags); error != 0) fail(error);
  // An open file could not be replaced by the next one.
  file_ = Handle();
}

bool HiddenFile::takeFreePlace(const std::wstring& target) {
  checkName();
  const DWORD error = renamed(name_, target, MOVEFILE_WRITE_THROUGH);
  if (error == ERROR_ALREADY_EXISTS || error == ERROR_FILE_EXISTS) return false;
  if (error != 0) fail(error);
  file_ = Handle();
  return true;
}

void removeIfLeft(const std::wstring& hidden) {
  constexpr DWORD access = DELETE | READ_CONTROL | FILE_READ_ATTRIBUTES | FILE_WRITE_ATTRIBUTES;
  // Nobody else has open what can be opened without sharing it.
  const Handle file = openFile(hidden, access, 0, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT);
  FileState state{};
  if (!file.open() || ::GetFileInformationByHandle(file.get(), &state) == FALSE) return;
  const bool isLink = (state.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
  if (isLink || !isPlainFile(state) || state.nNumberOfLinks != 1 || !isOwn(file)) return;
  unprotect(file, state);
  FILE_DISPOSITION_INFO goes{TRUE};
  ::SetFileInformationByHandle(file.get(), FileDispositionInfo, &goes, sizeof goes);
}

std::unique_ptr<OutputFile> openOutputFile(const Path& file, Hidden made) {
  Path target{narrow(withoutLink(nameOf(file)))};
  if (target.leaf().empty()) throw Failure("Is a directory");
  if (const auto former = stateOf(nameOf(target))) {
    if ((former->dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) throw Failure("Is a directory");
    if (!isPlainFile(*former)) throw Failure("Not a plain file");
    if ((former->dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0) fail(ERROR_ACCESS_DENIED);
    // Another program that has it open may be done by the time it is replaced.
    const auto check = [](const Handle& writable) {
      if (!writable.open() && ::GetLastError() != ERROR_SHARING_VIOLATION) fail();
    };
    check(openFile(nameOf(target), GENERIC_WRITE, shareAll));
    // A file that stays asks nobody, but is to fail like one that changes.
    check(openFolder(target.parent(), FILE_ADD_FILE));
  }
  return std::make_unique<WindowsOutputFile>(std::move(target), made);
}

}  // namespace kova::windows
