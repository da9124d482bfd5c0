// SPDX-License-Identifier: MIT
#include <algorithm>
#include <new>

#include "platform/native_files.h"
#include "platform/temporary_name.h"

namespace kova {

namespace {

struct LockedFolder final : FolderLock {
  explicit LockedFolder(Handle held) : lock(std::move(held)) {}
  Handle lock;
};

class RealFileSystem final : public FileSystem {
 public:
  RealFileSystem(const CodePage& codePage, NewFileMode newFileMode)
      : codePage_(codePage), newFileMode_(newFileMode) {}

  Path path(std::string_view text) const override {
    if (text.empty()) throw Failure("The name is empty");
    if (text.find('\0') != std::string_view::npos) throw Failure("The name holds a NUL");
    std::string name = codePage_.toNative(text);
    for (const char separator : pathSeparators) {
      std::replace(name.begin(), name.end(), separator, pathSeparator);
    }
    return {name};
  }

  std::string text(std::string_view native) const override { return codePage_.fromNative(native); }
  bool fileExists(const Path& file) const override { return state(file).has_value(); }
  bool folderExists(const Path& folder) const override { return native::isFolder(folder); }

  std::string read(const Path& file) const override {
    try {
      return native::contentOf(native::openPlainFile(file));
    } catch (const std::bad_alloc&) {
      throw Failure("not enough memory");
    }
  }

  std::unique_ptr<OutputFile> create(const Path& file) override {
    return openOutputFile(file, newFileMode_, Made::atOnce);
  }
  std::unique_ptr<OutputFile> createLate(const Path& file) override {
    return openOutputFile(file, newFileMode_, Made::onceItIsNeeded);
  }

  void createFolder(const Path& folder) override {
    const auto end = folder.native.find_last_not_of(pathSeparator) + 1;
    native::createFolder(folder, Path{folder.native.substr(0, end)}.parent());
  }

  void copy(const Path& from, const Path& to) override { native::copy(from, to); }

  bool copyAside(const Path& from, const Path& to) override {
    const auto copy = temporaryCopy(from, to);
    native::flush(copy->file());
    if (!copy->takeFreeName(to)) return false;
    native::flushNames(to.parent());
    return true;
  }

  void remove(const Path& file) override { native::remove(file); }

  std::vector<std::string> plainFiles(const Path& folder) const override {
    return native::plainFiles(folder);
  }

  std::optional<FileState> state(const Path& file) const override { return native::state(file); }

  bool nameFits(const Path& folder, std::string_view name) const override {
    return !name.empty() && native::nameFits(folder, name);
  }

  std::string withoutCase(std::string_view name) const override {
    std::string capitals(name);
    for (char& letter : capitals) letter = codePage_.capital(letter);
    return capitals;
  }

  bool ignoresCase(const Path& folder) const override {
    const TemporaryFile probe(folder, "case");
    return native::hasName(probe.file(), folder / withoutCase(probe.name().leaf()));
  }

  std::unique_ptr<FolderLock> lock(const Path& folder) override {
    auto held = native::lock(folder);
    return held ? std::make_unique<LockedFolder>(std::move(*held)) : nullptr;
  }

  void flushAll(const Path& folder) override { native::flushAll(folder); }

  void removeStaleTemporaryFiles(const Path& folder) override {
    try {
      native::forEachName(folder, [&](const std::string& name) {
        if (isHiddenName(name)) native::removeIfStale(folder / name);
      });
    } catch (const Failure&) {
      return;  // what can't be looked through keeps what it holds
    }
  }

 private:
  const CodePage& codePage_;
  NewFileMode newFileMode_;
};

}  // namespace

std::string native::contentOf(const Source& source) {
  std::string content;
  std::size_t filled = 0;
  // One byte more than expected tells a file that has grown.
  auto room = static_cast<std::size_t>(std::min<std::uint64_t>(source.bytes, largestFile)) + 1;
  for (;;) {
    if (filled == content.size()) {
      if (filled > largestFile) throw Failure("The file is larger than 64 MiB");
      content.resize(filled + std::exchange(room, readAhead));
    }
    char* const into = content.data() + filled;
    const std::size_t count = readSome(source.file, into, content.size() - filled);
    if (count == 0) break;
    filled += count;
  }
  content.resize(filled);
  return content;
}

std::unique_ptr<FileSystem> native::fileSystem(const CodePage& codePage, NewFileMode newFileMode) {
  return std::make_unique<RealFileSystem>(codePage, newFileMode);
}

}  // namespace kova
