// SPDX-License-Identifier: MIT
#include <algorithm>
#include <ctime>
#include <limits>

#include "platform/machine.h"

namespace kova {

namespace {

class RealClock final : public Clock {
 public:
  std::int32_t unixTime() const override {
    using Limits = std::numeric_limits<std::int32_t>;
    const std::int64_t now = std::time(nullptr);
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(now, Limits::min(), Limits::max()));
  }
};

}  // namespace

std::unique_ptr<Clock> realClock() {
  return std::make_unique<RealClock>();
}

}  // namespace kova
