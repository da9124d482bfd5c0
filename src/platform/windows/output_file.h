// SPDX-License-Identifier: MIT
// The one gate through which content reaches a folder: written whole under a temporary name, then
// renamed.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/file_system.h"
#include "platform/windows/calls.h"

namespace kova::windows {

/// Others may read, write, rename and remove what is open.
inline constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// A handle that is not open if the call fails; GetLastError tells why.
Handle openFile(const std::wstring& name, DWORD access, DWORD share, DWORD how = OPEN_EXISTING,
                DWORD flags = 0);

Handle openFolder(const Path& folder, DWORD access);

using FileState = BY_HANDLE_FILE_INFORMATION;
/// State of a file or folder, links followed; nothing if there is none. Throws Failure if that
/// can't be told.
std::optional<FileState> stateOf(const std::wstring& name);
FileState stateOf(const Handle& file);
bool isPlainFile(const FileState& state);
/// In bytes.
std::uint64_t sizeOf(const FileState& state);
/// Nothing for what is no plain file.
std::optional<FileState> stampOf(const std::optional<FileState>& state);

/// Throws Failure if the file keeps no access list of another one although it could.
void keepAccessList(const std::wstring& from, const std::wstring& to);
/// Sets time and attributes as those of `from`: who may write it, who is shown it.
void keepAttributes(const FileState& from, const Handle& to);
/// A file that is protected against writing can be removed and replaced behind this.
void allowRemoval(const std::wstring& name);

/// An empty file under a temporary name, made by this run, which nobody else can write or lock as
/// long as it is open. It goes with the object unless it has taken a place.
class HiddenFile {
 public:
  /// In `folder`, which ends in a separator or is empty, named after `leaf`.
  HiddenFile(const Path& folder, std::string_view leaf);
  HiddenFile(const HiddenFile&) = delete;
  HiddenFile& operator=(const HiddenFile&) = delete;
  ~HiddenFile();

  const Handle& handle() const { return file_; }
  /// Its temporary name.
  const std::wstring& name() const { return name_; }
  /// Appends all of `content`.
  void write(std::string_view content) const;
  void flush() const { checked(::FlushFileBuffers(file_.get())); }
  /// Renames the file to `target`, which it replaces.
  void takePlaceOf(const std::wstring& target);
  /// Renames the file to `target`; false if there is an entry of that name.
  bool takeFreePlace(const std::wstring& target);

 private:
  // Who may write the folder may have put another file there.
  bool isStillNamed() const;
  void checkName() const;

  std::wstring name_;
  Handle file_;  ///< open until it has gone from its temporary name
};

/// Removes a temporary file of this account that nobody holds.
void removeIfLeft(const std::wstring& hidden);
/// When the hidden file of a new content is made.
enum class Hidden { atOnce, onceItIsNeeded };
/// New content for `file`.
std::unique_ptr<OutputFile> openOutputFile(const Path& file, Hidden made);

}  // namespace kova::windows
