// SPDX-License-Identifier: MIT
#include "platform/output_file.h"

#include <array>

#include "platform/native_files.h"
#include "platform/temporary_name.h"

namespace kova {

namespace {

// What can't be read holds something else.
bool holds(const Path& target, std::string_view content) {
  const Handle file = native::openTarget(target);
  if (!file.open()) return false;
  std::array<char, 16384> chunk;
  try {
    while (const std::size_t count = native::readSome(file, chunk.data(), chunk.size())) {
      if (!content.starts_with(std::string_view(chunk.data(), count))) return false;
      content.remove_prefix(count);
    }
  } catch (const Failure&) {
    return false;
  }
  return content.empty();
}

class ReplacingFile final : public OutputFile {
 public:
  ReplacingFile(Path target, NewFileMode newFileMode, Made made)
      : target_(std::move(target)), newFileMode_(newFileMode) {
    if (made == Made::atOnce) makeTemporary();
  }

  void write(std::string_view content) override {
    flushed_ = false;
    content_ += content;
    if (temporary_) native::write(temporary_->file(), content);
  }

  void flush() override {
    former_ = native::targetState(target_);
    targetStays_ = former_ && former_->bytes == content_.size() && holds(target_, content_);
    if (!targetStays_) {
      const bool isNew = !temporary_;
      if (isNew) makeTemporary();
      if (!isNew || native::temporaryFilesArePrivate) keepPermissions();
      native::flush(temporary_->file());
    }
    flushed_ = true;
  }

  void close() override {
    if (targetStays_ && former_ != native::targetState(target_)) flushed_ = false;
    if (!flushed_) flush();
    if (!targetStays_) temporary_->replace(target_);
    temporary_.reset();
  }

 private:
  void makeTemporary() {
    temporary_.emplace(target_.parent(), target_.leaf());
    // Nobody is to read it meanwhile who may not read it afterwards.
    if (!native::temporaryFilesArePrivate) keepPermissions();
    native::write(temporary_->file(), content_);
  }

  void keepPermissions() const { native::keepPermissions(target_, newFileMode_, *temporary_); }

  Path target_;
  NewFileMode newFileMode_;
  std::string content_;
  std::optional<TemporaryFile> temporary_;  ///< holds the content, once it is there
  std::optional<FileState> former_;         ///< of the target, at the flush
  bool targetStays_ = false;                ///< since it holds the content already
  bool flushed_ = false;
};

}  // namespace

bool isCertainly(const Handle& file, const Path& name) {
  try {
    return native::hasName(file, name);
  } catch (const Failure&) {
    return false;
  }
}

TemporaryFile::TemporaryFile(const Path& folder, std::string_view leaf) {
  for (int name = 0; name < temporaryNames; ++name) {
    name_ = folder / temporaryName(native::beginningOf(leaf, folder), native::randomNumber());
    file_ = native::makeTemporaryFile(name_);
    if (file_.open()) return;
  }
  throw Failure(noTemporaryName);
}

TemporaryFile::~TemporaryFile() {
  if (!renamed_ && isCertainly(file_, name_)) native::removeTemporaryFile(file_, name_);
}

void TemporaryFile::replace(const Path& target) {
  checkName();
  native::rename(file_, name_, target);
  renamed_ = true;
}

bool TemporaryFile::takeFreeName(const Path& target) {
  checkName();
  return renamed_ = native::renameToFreeName(file_, name_, target);
}

void TemporaryFile::checkName() const {
  if (!isCertainly(file_, name_)) throw Failure("The temporary file has been taken away");
}

std::unique_ptr<TemporaryFile> temporaryCopy(const Path& from, const Path& to) {
  const native::Source source = native::openPlainFile(from);
  auto copy = std::make_unique<TemporaryFile>(to.parent(), from.leaf());
  native::fillCopy(from, source, *copy);
  return copy;
}

std::unique_ptr<OutputFile> openOutputFile(const Path& file, NewFileMode newFileMode, Made made) {
  Path target = native::withoutLink(file);
  if (target.leaf().empty()) throw Failure("Is a directory");
  native::checkMayBeReplaced(target);
  return std::make_unique<ReplacingFile>(std::move(target), newFileMode, made);
}

}  // namespace kova
