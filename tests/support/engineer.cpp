// SPDX-License-Identifier: MIT
#include "support/engineer.h"

#include <algorithm>
#include <array>
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

Answer answerOf(const std::string& word) {
  static const std::map<std::string, Answer> answers = {
      {"ok", Answer::ok}, {"cancel", Answer::cancel}, {"yes", Answer::yes}, {"no", Answer::no}};
  return answers.at(word);
}

/// What stands behind a verb: a word, mostly the name of a control, and a text behind that.
struct Words {
  Engineer& engineer;
  std::string word;
  std::string text;

  TextField& field() const { return engineer.field(word); }
  Form1& form() const { return engineer.program.wizard.form; }
};

struct Verb {
  std::string_view usage;
  void (*act)(const Words&);
};

// The language of the programs that drive the wizard from outside. {home} stands for the home
// directory, in a text \r, \n, \0 and \xFF for their characters.
const std::array<Verb, 13> verbs = {{
    {"answer ok|cancel|yes|no",
     [](const Words& w) { w.engineer.answers.push_back(answerOf(w.word)); }},
    {"caret FIELD PLACE", [](const Words& w) { clickAt(w.field(), std::stoul(w.text)); }},
    {"choose LIST ENTRY",
     [](const Words& w) { std::get<DropDownList*>(w.engineer.control(w.word))->setText(w.text); }},
    {"click CONTROL", [](const Words& w) { std::visit(Click{}, w.engineer.control(w.word)); }},
    {"close", [](const Words& w) { w.engineer.program.helper.window.unload(); }},
    {"enter FIELD", [](const Words& w) { w.field().keyDown(TextField::enterKey); }},
    {"focus FIELD", [](const Words& w) { w.field().gotFocus(); }},
    {"leave FIELD", [](const Words& w) { w.field().lostFocus(); }},
    {"menu server|property",
     [](const Words& w) { (w.word == "server" ? w.form().srvGuide : w.form().prpGuide).click(); }},
    {"select LINE", [](const Words& w) { w.form().PropertyList.select(std::stoi(w.word)); }},
    {"setenv NAME VALUE", [](const Words& w) { w.engineer.environment.values[w.word] = w.text; }},
    {"time SECONDS", [](const Words& w) { w.engineer.clock.now = std::stoi(w.word); }},
    {"type FIELD TEXT", [](const Words& w) { type(w.field(), w.text); }},
}};

std::string replaced(std::string text, std::string_view what, std::string_view by) {
  for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size())) {
    text.replace(at, what.size(), by);
  }
  return text;
}

std::string unescaped(std::string text) {
  using namespace std::string_view_literals;
  constexpr std::array escapes{std::pair("\\r"sv, "\r"sv), std::pair("\\n"sv, "\n"sv),
                               std::pair("\\0"sv, "\0"sv), std::pair("\\xFF"sv, "\xFF"sv)};
  for (const auto& [escape, byte] : escapes) text = replaced(std::move(text), escape, byte);
  return text;
}

std::string nextWord(std::string& line) {
  const auto blank = line.find(' ');
  std::string word = line.substr(0, blank);
  line.erase(0, blank == std::string::npos ? blank : blank + 1);
  return word;
}

}  // namespace

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
  return {state.exportCount, state.historyCount, state.alarmCount};
}

std::string Engineer::carryOut(const std::string& line) {
  std::string rest = replaced(line, "{home}", home);
  const std::string verb = nextWord(rest);
  const auto* const known = std::find_if(verbs.begin(), verbs.end(), [&](const Verb& row) {
    return row.usage.substr(0, row.usage.find(' ')) == verb;
  });
  if (known == verbs.end()) return "no such act: " + verb;
  const std::string word = nextWord(rest);
  known->act({*this, word, unescaped(rest)});
  return "";
}

}  // namespace kova::test
