// SPDX-License-Identifier: MIT
#include "platform/state_folder.h"

#include <algorithm>

#include "platform/native_files.h"
#include "platform/temporary_name.h"

namespace kova {
namespace {

constexpr std::string_view folderName = "kova-setup-wizard";

void makeFolders(const Path& folder) {
  const auto end = folder.native.find_last_not_of(pathSeparator) + 1;
  const Path parent{folder.native.substr(0, end)};
  if (parent.native.empty() || native::isFolder(parent)) return;
  makeFolders(parent.parent());
  native::makePrivateFolder(parent);
}

}  // namespace

std::string randomName() {
  return hexadecimalText(native::randomNumber());
}

bool isRandomName(std::string_view text) {
  return text.size() == randomDigits && text.find_first_not_of(hexadecimals) == text.npos;
}

StateFolder::StateFolder(const Path& home) : folder_(home / folderName) {
  if (home.native.empty()) throw Failure("The account has no home directory");
  makeFolders(home);
  native::makePrivateFolder(folder_);
  native::checkIsPrivate(folder_);
  native::forEachName(folder_, [this](const std::string& name) {
    if (isHiddenName(name)) native::removeIfStale(folder_ / name);
  });
}

bool StateFolder::exists(const Path& home) {
  return !home.native.empty() && native::entryExists(home / folderName);
}

std::vector<std::string> StateFolder::names() const {
  std::vector<std::string> names;
  native::forEachName(folder_, [&](const std::string& name) {
    if (name.front() != '.') names.push_back(name);
  });
  std::sort(names.begin(), names.end());
  return names;
}

std::optional<FileState> StateFolder::state(std::string_view name) const {
  return native::stateOfOwnFile(folder_ / name);
}

std::string StateFolder::read(std::string_view name) const {
  const native::Source source = native::openPlainFile(folder_ / name);
  // Before the open a link would have been told by its name, and a file by its owner.
  if (!state(name) || !isCertainly(source.file, folder_ / name)) throw Failure("Not a plain file");
  return native::contentOf(source);
}

void StateFolder::replace(std::string_view name, std::string_view content) {
  TemporaryFile file(folder_, name);
  native::write(file.file(), content);
  file.replace(folder_ / name);
}

void StateFolder::rename(std::string_view from, std::string_view to) {
  native::replaceName(folder_ / from, folder_ / to);
}

void StateFolder::remove(std::string_view name) {
  try {
    native::remove(folder_ / name);
  } catch (const Failure&) {
    return;  // it is tried again at a later start
  }
}

Handle StateFolder::hold(std::string_view name) {
  Handle held = native::makeTemporaryFile(folder_ / name);
  if (!held.open()) throw Failure("The name is taken");
  return held;
}

bool StateFolder::isHeld(std::string_view name) const {
  return native::isHeld(folder_ / name);
}

}  // namespace kova
