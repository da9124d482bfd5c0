// SPDX-License-Identifier: MIT
#include "actions.h"

#include <algorithm>
#include <array>
#include <map>
#include <string_view>
#include <utility>

namespace kova::measure {
namespace {

Answer answerOf(const std::string& word) {
  static const std::map<std::string, Answer> answers = {
      {"ok", Answer::ok}, {"cancel", Answer::cancel}, {"yes", Answer::yes}, {"no", Answer::no}};
  return answers.at(word);
}

/// What stands behind a verb: a word, mostly the name of a control, and a text behind that.
struct Words {
  test::Engineer& engineer;
  std::string word;
  std::string text;

  TextField& field() const { return engineer.field(word); }
  Form1& form() const { return engineer.program.wizard.form; }
};

struct Verb {
  std::string_view usage;
  void (*act)(const Words&);
};

// {home} stands for the home directory, in a text \r, \n, \0 and \xFF for their characters.
const std::array<Verb, 13> verbs = {{
    {"answer ok|cancel|yes|no",
     [](const Words& w) { w.engineer.answers.push_back(answerOf(w.word)); }},
    {"caret FIELD PLACE", [](const Words& w) { test::clickAt(w.field(), std::stoul(w.text)); }},
    {"choose LIST ENTRY",
     [](const Words& w) { std::get<DropDownList*>(w.engineer.control(w.word))->setText(w.text); }},
    {"click CONTROL", [](const Words& w) { test::click(w.engineer.control(w.word)); }},
    {"close", [](const Words& w) { w.engineer.program.helper.window.unload(); }},
    {"enter FIELD", [](const Words& w) { w.field().keyDown(TextField::enterKey); }},
    {"focus FIELD", [](const Words& w) { w.field().gotFocus(); }},
    {"leave FIELD", [](const Words& w) { w.field().lostFocus(); }},
    {"menu server|property",
     [](const Words& w) { (w.word == "server" ? w.form().srvGuide : w.form().prpGuide).click(); }},
    {"select LINE", [](const Words& w) { w.form().PropertyList.select(std::stoi(w.word)); }},
    {"setenv NAME VALUE", [](const Words& w) { w.engineer.environment.values[w.word] = w.text; }},
    {"time SECONDS", [](const Words& w) { w.engineer.clock.now = std::stoi(w.word); }},
    {"type FIELD TEXT", [](const Words& w) { test::type(w.field(), w.text); }},
}};

std::string replaced(std::string text, std::string_view what, std::string_view by) {
  for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size())) {
    text.replace(at, what.size(), by);
  }
  return text;
}

std::string unescaped(std::string text) {
  using namespace std::string_view_literals;
  constexpr std::array escapes{std::pair(R"(\r)"sv, "\r"sv), std::pair(R"(\n)"sv, "\n"sv),
                               std::pair(R"(\0)"sv, "\0"sv), std::pair(R"(\xFF)"sv, "\xFF"sv)};
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

std::string carryOut(test::Engineer& engineer, const std::string& line) {
  std::string rest = replaced(line, "{home}", engineer.home);
  const std::string verb = nextWord(rest);
  const auto* const known = std::find_if(verbs.begin(), verbs.end(), [&](const Verb& row) {
    return row.usage.substr(0, row.usage.find(' ')) == verb;
  });
  if (known == verbs.end()) return "no such act: " + verb;
  const std::string word = nextWord(rest);
  known->act({engineer, word, unescaped(rest)});
  return "";
}

}  // namespace kova::measure
