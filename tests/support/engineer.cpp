// SPDX-License-Identifier: MIT
#include "support/engineer.h"

#include <algorithm>
#include <array>
#include <sstream>
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
struct Operands {
  Engineer& engineer;
  std::string word;
  std::string text;

  TextField& field() const { return engineer.field(word); }
  int number() const { return std::stoi(word); }
  Form1& form() const { return engineer.program.wizard.form; }
};

struct Verb {
  std::string_view name;
  std::string_view operands;
  void (*act)(const Operands&);
};

// The language of the programs that drive the wizard from outside: its acts, and beside them one
// look, "counts PROPERTIES HISTORY ALARMS". {home} stands for the home directory, in a text \r, \n,
// \0 and \xFF for their characters.
const std::array<Verb, 13> verbs = {{
    {"answer", "ok|cancel|yes|no",
     [](const Operands& o) { o.engineer.answers.push_back(answerOf(o.word)); }},
    {"caret", "FIELD PLACE", [](const Operands& o) { clickAt(o.field(), std::stoul(o.text)); }},
    {"choose", "LIST ENTRY",
     [](const Operands& o) {
       std::get<DropDownList*>(o.engineer.control(o.word))->setText(o.text);
     }},
    {"click", "CONTROL",
     [](const Operands& o) { std::visit(Click{}, o.engineer.control(o.word)); }},
    {"close", "", [](const Operands& o) { o.engineer.program.helper.window.unload(); }},
    {"enter", "FIELD", [](const Operands& o) { o.field().keyDown(enterKey); }},
    {"focus", "FIELD", [](const Operands& o) { o.field().gotFocus(); }},
    {"leave", "FIELD", [](const Operands& o) { o.field().lostFocus(); }},
    {"menu", "server|property",
     [](const Operands& o) {
       (o.word == "server" ? o.form().srvGuide : o.form().prpGuide).click();
     }},
    {"select", "LINE", [](const Operands& o) { o.form().PropertyList.select(o.number()); }},
    {"setenv", "NAME VALUE",
     [](const Operands& o) { o.engineer.environment.values[o.word] = o.text; }},
    {"time", "SECONDS", [](const Operands& o) { o.engineer.clock.now = o.number(); }},
    {"type", "FIELD TEXT", [](const Operands& o) { type(o.field(), o.text); }},
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

Engineer::Engineer(std::string homeFolder, FileSystem* files)
    : realFiles(posixFileSystem(codePage())),
      home(std::move(homeFolder)),
      program(Platform{files != nullptr ? *files : *realFiles, environment, clock, programs},
              [this](const Message& message) { return answer(message); }) {
  environment.home = home;
  program.wizard.endProcess = [this] { ended = true; };
  for (const auto& designed : designedControls(program.wizard.form, form1Design())) {
    controls_[std::string(designed.design->name)] = designed.control;
  }
  for (const auto& designed : designedControls(program.helper, exportHelperDesign())) {
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
  if (verb == "counts") {
    std::ostringstream counts;
    counts << rows();
    return counts.str() == rest ? "" : "there are " + counts.str();
  }
  const auto* const known =
      std::find_if(verbs.begin(), verbs.end(), [&](const Verb& row) { return row.name == verb; });
  if (known == verbs.end()) return "no such act: " + verb;
  const std::string word = nextWord(rest);
  known->act({*this, word, unescaped(rest)});
  return "";
}

}  // namespace kova::test
