// SPDX-License-Identifier: MIT
// Stands between a test program and the system: calls about the files below a folder are noted, and
// fail or kill the program on request.
#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <vector>

namespace kova::test {

struct SystemCalls {
  struct Call {
    std::string name;
    std::string path;
    bool done = false;      ///< not failed
    std::string with = {};  ///< once done: what else was given: bytes, new name, size, flags
  };

  std::string folder = {};  ///< the files whose calls count; none if it is empty
  std::size_t at = 0;       ///< number of the call that fails, from 1; 0 lets all pass
  int error = 0;            ///< with which it fails; 0 kills the program in place of that
  bool onwards = false;     ///< whether all later calls fail as well
  std::set<std::string> refused = {};  ///< calls that fail with the error each time
  bool flushes = false;  ///< whether flushes reach the disk; without, a run takes milliseconds
  std::vector<Call> made = {};
};

/// Those of this process.
SystemCalls& systemCalls();

/// The note of a call; null for a file that does not count.
SystemCalls::Call* note(const char* name, std::string path);
/// The call is to fail, or to kill the program.
bool strikes(const SystemCalls::Call* noted);

}  // namespace kova::test
