// SPDX-License-Identifier: MIT
// Reading a complete file.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>

#include "platform/file_system.h"

namespace kova {

/// Bytes to read at a time beyond the known size of a file.
inline constexpr std::size_t readAhead = std::size_t{64} << 10U;

/// All bytes of a file of about `size`. `readSome` fills a buffer of the given size in part and
/// returns the number of bytes, 0 at the end. Throws Failure for a file larger than `largestFile`.
template <class ReadSome>
std::string allOf(std::uint64_t size, ReadSome readSome) {
  std::string content;
  std::size_t filled = 0;
  // One byte more than expected shows whether the file has grown.
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
