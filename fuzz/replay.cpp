// SPDX-License-Identifier: MIT
// Plays each file of the folder that the command line names.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "harness.h"

int main(int count, char** words) {
  int played = 0;
  for (const auto& entry : std::filesystem::directory_iterator(words[count - 1])) {
    std::cerr << entry.path().string() << '\n';
    std::ifstream file(entry.path(), std::ios::binary);
    kova::fuzz::check(std::string(std::istreambuf_iterator<char>(file), {}));
    ++played;
  }
  kova::fuzz::require(played > 0, "the folder holds inputs");
}
