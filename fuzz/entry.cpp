// SPDX-License-Identifier: MIT
#include <cstdint>

#include "harness.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kova::fuzz::check({reinterpret_cast<const char*>(data), size});
  return 0;
}
