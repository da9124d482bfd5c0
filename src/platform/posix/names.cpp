// SPDX-License-Identifier: MIT
#include <sys/random.h>

#include <algorithm>

#include "platform/native_files.h"
#include "platform/posix/calls.h"
#include "platform/temporary_name.h"

namespace kova {

namespace {

constexpr std::size_t usualNameLimit = 255;  // in bytes, or characters on some file systems

// Length of the longest name in `folder`, in bytes; nothing if there is no limit.
std::optional<std::size_t> nameLimit(const Path& folder) {
  const std::string name = folder.native.empty() ? "." : folder.native;
  const auto limit = ::pathconf(name.c_str(), _PC_NAME_MAX);
  return limit > 0 ? std::optional(static_cast<std::size_t>(limit)) : std::nullopt;
}

}  // namespace

std::string_view faultOfName(std::string_view text) {
  return text.find(pathSeparator) == std::string_view::npos ? std::string_view() : pathSeparators;
}

bool native::nameFits(const Path& folder, std::string_view name) {
  const auto limit = nameLimit(folder);
  if (limit && name.size() > *limit) return false;
  struct stat state {};
  if (::lstat((folder / name).native.c_str(), &state) == 0) return true;
  // Some file systems count characters of their own and have more that a name must not hold.
  return errno != ENAMETOOLONG && errno != EINVAL && errno != EILSEQ;
}

std::string native::beginningOf(std::string_view leaf, const Path& folder) {
  const std::size_t limit = nameLimit(folder).value_or(usualNameLimit);
  std::size_t end = roomInTemporaryName(std::min(limit, usualNameLimit));
  if (leaf.size() <= end) return std::string(leaf);
  // Some file systems refuse half a character.
  while (end > 0 && (static_cast<unsigned char>(leaf[end]) & 0xC0U) == 0x80U) --end;
  return std::string(leaf.substr(0, end));
}

std::uint64_t native::randomNumber() {
  std::uint64_t random = 0;
  const auto size = checked(::getrandom, &random, sizeof random, 0U);
  if (size != sizeof random) fail(EIO);
  return random;
}

}  // namespace kova
