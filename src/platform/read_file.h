// SPDX-License-Identifier: MIT
// Reading a file to its end.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>

#include "platform/file_system.h"

namespace kova {

/// So many bytes are asked for at a time where the size of a file does not tell.
inline constexpr std::size_t readAhead = std::size_t{64} << 10U;

/// All bytes of a file of about `size`. `readSome` puts some into a place with room for so many and
/// gives their number, 0 at the end. Throws Failure for a file larger than `largestFile`.
template <class ReadSome>
std::string allOf(std::uint64_t size, ReadSome readSome) {
  std::string content;
  std::size_t filled = 0;
  // One byte more than expected tells a file that has grown.
  auto room = static_cast<std::size_t>(std::min<std::uint64_t>(size, largestFile)) + 1;
  for (;;) {
    if (filled == content.size()) {
      if (filled > largestFile) throw Failure("The file is larger than 64 MiB");
      content.resize(filled + std::exchange(room, readAhead));
    }
    const std::size_t count = readSome(content.data() + filled, content.size() - filled);
    if (count == 0) break;
    filled += count;
  }
  content.resize(filled);
  return content;
}

}  // namespace kova
