// SPDX-License-Identifier: MIT
#include "tables/row_pairs.h"

#include <algorithm>
#include <unordered_map>

namespace kova {
namespace {

std::vector<bool> findMoved(const std::vector<std::size_t>& partners) {
  std::vector<bool> moved(partners.size());
  std::vector<std::size_t> ends;  // [k]: lowest last row of an ascending sequence of length k + 1
  std::vector<std::size_t> previous(partners.size(), noPartner);
  for (std::size_t row = 0; row < partners.size(); ++row) {
    if (partners[row] == noPartner) continue;
    moved[row] = true;
    const auto place = std::lower_bound(
        ends.begin(), ends.end(), partners[row],
        [&](std::size_t end, std::size_t partner) { return partners[end] < partner; });
    if (place != ends.begin()) previous[row] = *(place - 1);
    if (place == ends.end()) {
      ends.push_back(row);
    } else {
      *place = row;
    }
  }
  if (ends.empty()) return moved;
  for (std::size_t row = ends.back(); row != noPartner; row = previous[row]) moved[row] = false;
  return moved;
}

}  // namespace

RowPairs pairRows(const std::vector<std::string>& before, const std::vector<std::string>& after) {
  std::unordered_map<std::string, std::vector<std::size_t>> known;
  for (std::size_t row = before.size(); row-- > 0;) known[before[row]].push_back(row);
  RowPairs pairs;
  pairs.kept.resize(before.size());
  for (const std::string& row : after) {
    const auto found = known.find(row);
    const bool has = found != known.end() && !found->second.empty();
    pairs.partners.push_back(has ? found->second.back() : noPartner);
    if (!has) continue;
    pairs.kept[found->second.back()] = true;
    found->second.pop_back();
  }
  pairs.moved = findMoved(pairs.partners);
  return pairs;
}

}  // namespace kova
