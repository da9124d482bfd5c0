// SPDX-License-Identifier: MIT
// The wizard in a process of its own, driven by acts from standard input: each line is an act,
// or "ready", which is answered. What was said is on standard output.
#include <exception>
#include <iostream>
#include <regex>

#include "acts.h"
#include "core/status.h"
#include "support/engineer.h"

namespace kova {
namespace {

void drive(const std::string& home) {
  test::Engineer engineer(home);
  engineer.start();
  for (std::string line; std::getline(std::cin, line);) {
    if (line == "ready") {
      std::cout << line << std::endl;
    } else if (const std::string wrong = measure::carryOut(engineer, line); !wrong.empty()) {
      std::cout << "wrong " << line << ": " << wrong << "\n";
    }
  }
  static const std::regex lineEnd("[\r\n]+");
  for (const std::string& message : engineer.messages) {
    std::cout << "said " << std::regex_replace(message, lineEnd, " ") << "\n";
  }
  std::cout << "status " << statusText(engineer.program.wizard) << "\n";
  if (engineer.ended) std::cout << "ended\n";
}

}  // namespace
}  // namespace kova

int main(int argc, char** argv) {
  try {
    kova::drive(argc > 1 ? argv[1] : "/");
  } catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 1;
  }
  return 0;
}
