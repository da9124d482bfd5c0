// SPDX-License-Identifier: MIT
#include "platform/posix/permissions.h"

#include <sys/xattr.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "platform/split.h"

namespace kova::native {

namespace {

constexpr const char* accessListName = "system.posix_acl_access";
constexpr mode_t permissionBits = 0777;
constexpr mode_t groupPermissions = 0070;
constexpr mode_t ownPermissions = 0700;

// Network shares and foreign file systems have owners and modes of their own, which nobody but
// their mount can choose.
bool meansNotHere(int error) {
  return error == EPERM || error == ENOTSUP || error == ENOSYS;
}

bool meansNoList(int error) {
  return error == ENODATA || error == ENOTSUP || error == ENOSYS;
}

// `get` is getxattr or fgetxattr on the file.
template <class Get>
std::optional<std::vector<char>> accessListFrom(Get get) {
  const auto size = get(nullptr, 0);
  if (size < 0 && meansNoList(errno)) return std::vector<char>();
  if (size < 0) return std::nullopt;
  std::vector<char> list(static_cast<std::size_t>(size));
  if (get(list.data(), list.size()) != size) return std::nullopt;
  return list;
}

// `get` is listxattr or getxattr on the file. Nothing if that is not there or not possible there.
template <class Get>
std::optional<std::string> attributeText(Get get) {
  const auto size = get(nullptr, 0);
  std::string text(static_cast<std::size_t>(std::max<ssize_t>(size, 0)), '\0');
  const auto got = size > 0 ? get(text.data(), text.size()) : size;
  if (got < 0 && meansNoList(errno)) return std::nullopt;
  if (got < 0) fail(errno);
  text.resize(static_cast<std::size_t>(got));
  return text;
}

Permissions permissionsOf(const struct stat& state, std::optional<std::vector<char>> list) {
  return {state.st_uid, state.st_gid, state.st_mode & 07777U, std::move(list)};
}

// False if this account may not.
bool give(const Handle& file, uid_t owner, gid_t group) {
  if (::fchown(file.get(), owner, group) == 0) return true;
  if (!meansNotHere(errno)) fail(errno);
  return false;
}

// True if the file has the group afterwards.
bool keepOwner(const Permissions& permissions, const Handle& file, const struct stat& state) {
  constexpr auto same = static_cast<uid_t>(-1);
  const bool groupIsKept = state.st_gid == permissions.group || give(file, same, permissions.group);
  if (state.st_uid != permissions.owner) give(file, permissions.owner, same);
  return groupIsKept;
}

// 0, or the error for which the file does not have the list. Where there is none to be kept, the
// file may have got one from its folder, which would let in others.
int keepAccessList(const Permissions& permissions, const Handle& file) {
  if (!permissions.accessList) return EACCES;
  const std::vector<char>& list = *permissions.accessList;
  if (!list.empty()) {
    const int set = ::fsetxattr(file.get(), accessListName, list.data(), list.size(), 0);
    return set == 0 ? 0 : errno;
  }
  if (::fgetxattr(file.get(), accessListName, nullptr, 0) <= 0) return 0;
  return ::fremovexattr(file.get(), accessListName) == 0 ? 0 : errno;
}

// The error of the call, 0 if the file has the mode.
int changeMode(const Handle& file, mode_t mode) {
  if ((stateOf(file).st_mode & 07777U) == mode) return 0;
  return ::fchmod(file.get(), mode) == 0 ? 0 : errno;
}

// Who belonged to the former group is one of the others now, and must not gain by that.
mode_t withoutGroup(mode_t mode) {
  const mode_t othersOfGroup = (mode & groupPermissions) >> 3U;
  return mode & (ownPermissions | othersOfGroup);
}

}  // namespace

Permissions permissionsOf(const struct stat& state, const std::string& name) {
  return permissionsOf(state, accessListFrom([&](char* list, std::size_t size) {
                         return ::getxattr(name.c_str(), accessListName, list, size);
                       }));
}

Permissions permissionsOf(const struct stat& state, const Handle& file) {
  return permissionsOf(state, accessListFrom([&](char* list, std::size_t size) {
                         return ::fgetxattr(file.get(), accessListName, list, size);
                       }));
}

void keepPermissions(const Permissions& permissions, const Handle& file) {
  keepOwner(permissions, file, stateOf(file));
  if (const int error = keepAccessList(permissions, file)) fail(error);
  if (const int error = changeMode(file, permissions.mode)) fail(error);
}

void keepPermissionsOrFewer(const Permissions& permissions, const Handle& copy) {
  const struct stat made = stateOf(copy);
  const bool groupIsKept = keepOwner(permissions, copy, made);
  const bool hasList = !permissions.accessList || !permissions.accessList->empty();
  mode_t mode = permissions.mode & permissionBits;
  if (!groupIsKept) mode = withoutGroup(mode);
  // A list speaks of the group as well: without the one the other is not kept either.
  if ((hasList && !groupIsKept) || keepAccessList(permissions, copy) != 0) mode &= ownPermissions;
  // A list brings a mode of its own.
  if (hasList || (made.st_mode & 07777U) != mode) setNewMode(copy, mode);
}

void setNewMode(const Handle& file, mode_t mode) {
  const int error = changeMode(file, mode);
  if (error != 0 && !meansNotHere(error)) fail(error);
}

void keepUserAttributes(const std::string& former, const Handle& file) {
  const auto list = attributeText(
      [&](char* names, std::size_t size) { return ::listxattr(former.c_str(), names, size); });
  const std::string names = list.value_or(std::string());
  for (const std::string_view part : split(names, '\0')) {
    if (!part.starts_with("user.")) continue;
    const std::string name(part);
    const auto value = attributeText([&](char* text, std::size_t size) {
      return ::getxattr(former.c_str(), name.c_str(), text, size);
    });
    if (!value) continue;
    const int set = ::fsetxattr(file.get(), name.c_str(), value->data(), value->size(), 0);
    if (set != 0 && !meansNotHere(errno)) fail(errno);
  }
}

void keepTimes(const struct stat& former, const Handle& file) {
  const std::array times{former.st_atim, former.st_mtim};
  if (::futimens(file.get(), times.data()) != 0 && !meansNotHere(errno)) fail(errno);
}

}  // namespace kova::native
