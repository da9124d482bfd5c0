// SPDX-License-Identifier: MIT
// The wizard in its real window, driven by acts from standard input: "press NAME" clicks a button,
// "ready" answers, all else is an act of the flow tests. What was said is on standard output.
#include <QAbstractButton>
#include <QApplication>
#include <exception>
#include <iostream>
#include <memory>
#include <regex>

#include "core/status.h"
#include "desktop/main_view.h"
#include "support/engineer.h"

namespace kova {
namespace {

void drive(int argc, char** argv) {
  const bool hasWindow = argc > 2 && std::string(argv[2]) == "window";
  std::unique_ptr<QApplication> application;
  if (hasWindow) application = std::make_unique<QApplication>(argc, argv);
  const CodePage page = CodePage::windows1252();
  test::Engineer engineer(argc > 1 ? argv[1] : "/");
  std::unique_ptr<MainView> view;
  if (hasWindow) view = std::make_unique<MainView>(engineer.program, page);
  engineer.start();
  for (std::string line; std::getline(std::cin, line);) {
    if (line == "ready") {
      std::cout << line << std::endl;
    } else if (hasWindow && line.starts_with("press ")) {
      qobject_cast<QAbstractButton*>(view->widget(line.substr(6)))->click();
    } else if (const std::string wrong = engineer.carryOut(line); !wrong.empty()) {
      std::cout << "wrong " << line << ": " << wrong << "\n";
    }
    if (hasWindow) QApplication::processEvents();
  }
  static const std::regex lineEnd("[\r\n]+");
  for (const std::string& message : engineer.messages) {
    std::cout << "said " << std::regex_replace(message, lineEnd, " ") << "\n";
  }
  for (const std::string& line : engineer.programs.started) std::cout << "started " << line << "\n";
  std::cout << "status " << statusText(engineer.program.wizard) << "\n";
  if (engineer.program.wizard.state.quitInProgress) std::cout << "ended\n";
}

}  // namespace
}  // namespace kova

int main(int argc, char** argv) {
  try {
    kova::drive(argc, argv);
  } catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 1;
  }
  return 0;
}
