// SPDX-License-Identifier: MIT
#include "review/overlay_files.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <utility>

namespace kova {
namespace {

// Every disk in use takes names of this length.
constexpr std::size_t alwaysFits = 100;

/// The form in which folders are stored here.
Path withoutEndingSeparator(Path folder) {
  while (folder.native.size() > 1 && folder.native.back() == pathSeparator) {
    folder.native.pop_back();
  }
  return folder;
}

Path folderOf(const Path& entry) {
  const Path parent = withoutEndingSeparator(entry.parent());
  return parent.native.empty() ? Path{"."} : parent;
}

char otherCase(unsigned char byte) {
  return static_cast<char>(std::islower(byte) != 0 ? std::toupper(byte) : std::tolower(byte));
}

std::string inOtherCase(std::string name) {
  std::transform(name.begin(), name.end(), name.begin(), otherCase);
  return name;
}

}  // namespace

class OverlayFiles::Output : public OutputFile {
 public:
  Output(OverlayFiles& files, Path target) : files_(files), target_(std::move(target)) {}
  void write(std::string_view content) override { content_ += content; }
  void flush() override {}
  void close() override { files_.remember(target_, std::move(content_)); }

 private:
  OverlayFiles& files_;
  Path target_;
  std::string content_;
};

std::vector<Path> OverlayFiles::written() const {
  std::map<std::int64_t, Path> names;
  for (const auto& [file, remembered] : files_) {
    if (remembered.content) names.emplace(remembered.change, file);
  }
  std::vector<Path> ordered;
  ordered.reserve(names.size());
  for (auto& [change, file] : names) ordered.push_back(std::move(file));
  return ordered;
}

std::vector<Path> OverlayFiles::removed() const {
  std::vector<Path> names;
  for (const auto& [file, remembered] : files_) {
    if (!remembered.content && below_.fileExists(file)) names.push_back(file);
  }
  return names;
}

bool OverlayFiles::fileExists(const Path& file) const {
  const Remembered* remembered = find(file);
  return remembered != nullptr ? remembered->content.has_value() : below_.fileExists(file);
}

bool OverlayFiles::folderExists(const Path& folder) const {
  return folders_.contains(withoutEndingSeparator(folder)) || below_.folderExists(folder);
}

std::string OverlayFiles::read(const Path& file) const {
  const Remembered* remembered = find(file);
  if (remembered == nullptr) return below_.read(file);
  if (!remembered->content) throw Failure("There is no such file");
  return *remembered->content;
}

std::unique_ptr<OutputFile> OverlayFiles::create(const Path& file) {
  const Path folder = folderOf(file);
  // Consecutive files mostly share a folder, so it is checked once.
  if (folder != lastFolder_ && !folderExists(folder)) throw Failure("There is no such directory");
  lastFolder_ = folder;
  if (folderExists(file)) throw Failure("The name is that of a directory");
  const std::string name = file.leaf();
  if (name.size() > alwaysFits && !nameFits(folder, name)) throw Failure("The name is too long");
  return std::make_unique<Output>(*this, file);
}

void OverlayFiles::createFolder(const Path& folder) {
  const Path name = withoutEndingSeparator(folder);
  if (!folderExists(folderOf(name))) throw Failure("There is no parent directory");
  if (folderExists(name) || fileExists(name)) throw Failure("The name is in use");
  folders_.insert(name);
}

void OverlayFiles::copy(const Path& from, const Path& to) {
  std::string content = read(from);
  const auto output = create(to);
  remember(to, std::move(content));
}

bool OverlayFiles::copyAside(const Path& from, const Path& to) {
  if (fileExists(to) || folderExists(to)) return false;
  copy(from, to);
  return true;
}

void OverlayFiles::remove(const Path& file) {
  if (!fileExists(file)) throw Failure("There is no such file");
  remember(file, std::nullopt);
}

std::vector<std::string> OverlayFiles::plainFiles(const Path& folder) const {
  std::set<std::string> names;
  if (below_.folderExists(folder)) {
    const auto there = below_.plainFiles(folder);
    names.insert(there.begin(), there.end());
  }
  for (const auto& [file, remembered] : files_) {
    if (file.parent() != (folder / "x").parent()) continue;
    if (!remembered.content) {
      names.erase(file.leaf());
    } else if (!file.leaf().starts_with('.')) {
      names.insert(file.leaf());
    }
  }
  return {names.begin(), names.end()};
}

std::optional<FileState> OverlayFiles::state(const Path& file) const {
  const Remembered* remembered = find(file);
  if (remembered == nullptr) return below_.state(file);
  if (!remembered->content) return std::nullopt;
  // No real file has device and inode 0.
  return FileState{.bytes = remembered->content->size(), .modified = remembered->change};
}

bool OverlayFiles::nameFits(const Path& folder, std::string_view name) const {
  return below_.nameFits(folderBelow(folder), name);
}

bool OverlayFiles::ignoresCase(const Path& folder) const {
  const Path there = folderBelow(folder);
  // An existing file found under both cases spares creating one.
  for (const std::string& name : below_.plainFiles(there)) {
    const std::string other = inOtherCase(name);
    if (other != name) return below_.state(there / name) == below_.state(there / other);
  }
  return below_.ignoresCase(there);
}

std::unique_ptr<FolderLock> OverlayFiles::lock(const Path&) {
  return std::make_unique<FolderLock>();
}

void OverlayFiles::remember(const Path& file, std::optional<std::string> content) {
  files_.insert_or_assign(file, Remembered{std::move(content), ++changes_});
}

const OverlayFiles::Remembered* OverlayFiles::find(const Path& file) const {
  const auto found = files_.find(file);
  return found == files_.end() ? nullptr : &found->second;
}

Path OverlayFiles::folderBelow(Path folder) const {
  folder = withoutEndingSeparator(std::move(folder));
  while (!below_.folderExists(folder) && folder != folderOf(folder)) folder = folderOf(folder);
  return folder;
}

}  // namespace kova
