// SPDX-License-Identifier: MIT
// The wizard in a process of its own, driven from standard input. Each line is an action: a verb, a
// word, mostly the name of a control, and a text in hexadecimal. "ready" is answered; "calls" lists
// the system calls since the last one: name, path and, in hexadecimal, what else was given, between
// tabs. What the wizard said is on standard output at the end.
#include <algorithm>
#include <exception>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <utility>

#include "core/status.h"
#include "reliability/system_calls.h"
#include "support/engineer.h"

namespace kova {
namespace {

std::string bytesOf(const std::string& hexadecimal) {
  std::string bytes;
  for (std::size_t at = 0; at < hexadecimal.size(); at += 2) {
    bytes += static_cast<char>(std::stoi(hexadecimal.substr(at, 2), nullptr, 16));
  }
  return bytes;
}

void act(test::Engineer& engineer, const std::string& line) {
  std::istringstream words(line);
  std::string verb;
  std::string word;
  std::string text;
  words >> verb >> word >> text;
  text = bytesOf(text);
  if (verb == "answer") {
    engineer.answers.push_back(word == "yes" ? Answer::yes : Answer::no);
  } else if (verb == "click") {
    test::click(engineer.control(word));
  } else if (verb == "leave") {
    engineer.field(word).lostFocus();
  } else if (verb == "select") {
    engineer.program.wizard.form.PropertyList.select(std::stoi(word));
  } else if (verb == "setenv") {
    engineer.environment.values[word] = text;
  } else if (verb == "time") {
    engineer.clock.now = std::stoi(word);
  } else if (verb == "type") {
    test::type(engineer.field(word), text);
  } else {
    throw std::invalid_argument("no such action: " + line);
  }
}

void listCalls() {
  for (const auto& call : std::exchange(test::systemCalls().made, {})) {
    if (!call.done) continue;
    std::cout << call.name << '\t' << call.path << '\t' << std::hex << std::setfill('0');
    for (const char byte : call.with) {
      std::cout << std::setw(2) << +static_cast<unsigned char>(byte);
    }
    std::cout << '\n';
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
      listCalls();
    } else {
      act(engineer, line);
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
