// SPDX-License-Identifier: MIT
#include "reliability/system_calls.h"

#include <utility>

namespace kova::test {

SystemCalls& systemCalls() {
  static SystemCalls calls;
  return calls;
}

SystemCalls::Call* note(const char* name, std::string path) {
  SystemCalls& calls = systemCalls();
  if (calls.folder.empty() || !path.starts_with(calls.folder)) return nullptr;
  return &calls.made.emplace_back(SystemCalls::Call{.name = name, .path = std::move(path)});
}

bool strikes(const SystemCalls::Call* noted) {
  const SystemCalls& calls = systemCalls();
  const std::size_t number = calls.made.size();
  if (noted == nullptr) return false;
  return number == calls.at || (calls.onwards && number > calls.at) ||
         calls.refused.contains(noted->name);
}

}  // namespace kova::test
