// SPDX-License-Identifier: MIT
#include "review/moved_rows.h"

#include <algorithm>

namespace kova {

std::vector<bool> findMoved(const std::vector<std::size_t>& partners) {
  std::vector<bool> moved(partners.size());
  std::vector<std::size_t> ends;  // rows at which an ascending part of length k + 1 ends lowest
  std::vector<std::size_t> ahead(partners.size(), noPartner);
  for (std::size_t row = 0; row < partners.size(); ++row) {
    if (partners[row] == noPartner) continue;
    moved[row] = true;
    const auto place = std::lower_bound(
        ends.begin(), ends.end(), partners[row],
        [&](std::size_t end, std::size_t partner) { return partners[end] < partner; });
    if (place != ends.begin()) ahead[row] = *(place - 1);
    if (place == ends.end()) {
      ends.push_back(row);
    } else {
      *place = row;
    }
  }
  if (ends.empty()) return moved;
  for (std::size_t row = ends.back(); row != noPartner; row = ahead[row]) moved[row] = false;
  return moved;
}

}  // namespace kova
