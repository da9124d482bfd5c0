// SPDX-License-Identifier: MIT
#include "support/engineer.h"

#include <utility>

namespace kova::test {
namespace {

const CodePage& codePage() {
  static const CodePage page = CodePage::windows1252();
  return page;
}

struct Click {
  void operator()(const TextField* c) const { c->click(); }
  void operator()(CheckBox* c) const { c->setValue(c->ticked() ? 0 : 1); }
  void operator()(OptionButton* c) const { c->select(); }
  void operator()(const CommandButton* c) const { c->click(); }
  void operator()(const Label* c) const { c->click(); }
  void operator()(const ListBox* c) const { c->doubleClick(); }
  void operator()(const void* /*c*/) const {}
};

}  // namespace

void click(const ControlPointer& control) {
  std::visit(Click{}, control);
}

Engineer::Engineer(std::string homeFolder)
    : files(realFileSystem(codePage())),
      home(std::move(homeFolder)),
      program(Platform{*files, environment, clock, programs},
              [this](const Message& message) { return answer(message); }) {
  environment.home = home;
  program.wizard.endProcess = [this] { ended = true; };
  for (const auto& designed : designedControls(program.wizard.form)) {
    controls_[std::string(designed.design->name)] = designed.control;
  }
  for (const auto& designed : designedControls(program.helper)) {
    controls_[std::string(designed.design->name)] = designed.control;
  }
}

Answer Engineer::answer(const Message& message) {
  const std::string title = message.title.empty() ? "" : message.title + ": ";
  messages.push_back(title + message.text);
  if (message.buttons == Buttons::ok || answers.empty()) return message.enter;
  const Answer given = answers.front();
  answers.pop_front();
  return given;
}

Rows Engineer::rows() const {
  const WizardState& state = program.wizard.state;
  return {state.project.exportCount, state.project.historyCount, state.project.alarmCount};
}

}  // namespace kova::test
