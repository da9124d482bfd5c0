// SPDX-License-Identifier: MIT
// The wizard in a process of its own, driven by acts from standard input: each line is an act,
// "ready", which is answered, or "calls", which tells the system calls since the last one: name,
// path and, in hexadecimal, what else was given, between tabs. What was said is on standard output.
#include <algorithm>
#include <exception>
#include <iostream>
#include <utility>

#include "actions.h"
#include "core/status.h"
#include "reliability/system_calls.h"
#include "support/engineer.h"

namespace kova {
namespace {

std::string hexadecimal(const std::string& bytes) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string text;
  for (const char byte : bytes) {
    text += digits[static_cast<unsigned char>(byte) >> 4U];
    text += digits[static_cast<unsigned char>(byte) & 15U];
  }
  return text;
}

void tellCalls() {
  for (const auto& call : std::exchange(test::systemCalls().made, {})) {
    if (!call.done) continue;
    std::cout << call.name << '\t' << call.path << '\t' << hexadecimal(call.with) << '\n';
  }
}

void drive(const std::string& home) {
  test::systemCalls() = {.folder = home, .flushes = true};
  test::Engineer engineer(home);
  engineer.start();
  for (std::string line; std::getline(std::cin, line);) {
    if (line == "ready") {
      std::cout << line << std::endl;
    } else if (line == "calls") {
      tellCalls();
    } else if (const std::string wrong = measure::carryOut(engineer, line); !wrong.empty()) {
      std::cout << "wrong " << line << ": " << wrong << "\n";
    }
  }
  for (std::string message : engineer.messages) {
    std::erase(message, '\r');
    std::replace(message.begin(), message.end(), '\n', ' ');
    std::cout << "said " << message << "\n";
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
