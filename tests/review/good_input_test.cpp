// SPDX-License-Identifier: MIT
// An engineer without a fault: no finding in what the wizard has written, and a status line that
// counts what a comparison of the files counts. The harness of acts looks.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "../../fuzz/harness.h"

namespace kova {

constexpr int projects = 30;  // a run; a repeated one goes on with other projects

TEST(GoodInput, IsWrittenWithoutAFindingAndCounted) {
  static unsigned seed = 0;
  for (int project = 0; project < projects; ++project) {
    std::mt19937 random(++seed);
    std::string bytes;
    const auto act = [&](std::uint8_t first, unsigned choices) {
      bytes += static_cast<char>(first + random() % choices);
      bytes += static_cast<char>(random() % 255);  // 255 ends the acts
    };
    act(fuzz::firstGoodAct, 1);
    act(fuzz::doneOfGood + 1, 1);
    for (auto properties = 1 + random() % 8; properties > 0; --properties) {
      act(fuzz::firstGoodAct + 1, 1);
    }
    act(fuzz::doneOfGood, 1);
    for (int more = 0; more < 30; ++more) {
      act(fuzz::firstGoodAct + 1, fuzz::goodActs - 1);
    }
    fuzz::check(bytes);
  }
}

}  // namespace kova
