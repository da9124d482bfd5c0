// SPDX-License-Identifier: MIT
#include "support/engineer.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

#include "core/status.h"

namespace kova::test {
namespace {

const CodePage& codePage() {
  static const CodePage page = CodePage::windows1252();
  return page;
}

struct Shown {
  std::string operator()(const TextField* c) const { return c->text(); }
  std::string operator()(const CheckBox* c) const { return c->ticked() ? "ticked" : "clear"; }
  std::string operator()(const OptionButton* c) const { return c->selected() ? "selected" : ""; }
  std::string operator()(const CommandButton* c) const { return c->enabled() ? "" : "disabled"; }
  std::string operator()(const Frame* c) const { return c->enabled() ? "enabled" : "disabled"; }
  std::string operator()(const Label* c) const { return c->caption(); }
  std::string operator()(const ListBox* c) const { return std::to_string(c->selectedIndex()); }
  std::string operator()(const DropDownList* c) const { return c->text(); }
};

struct Click {
  void operator()(const TextField* c) const { c->click(); }
  void operator()(CheckBox* c) const { c->setValue(c->ticked() ? 0 : 1); }
  void operator()(OptionButton* c) const { c->select(); }
  void operator()(const CommandButton* c) const { c->click(); }
  void operator()(const Frame* c) const { c->mouseDown(Frame::leftButton); }
  void operator()(const Label* c) const { c->click(); }
  void operator()(const ListBox* c) const { c->doubleClick(); }
  void operator()(const DropDownList* /*c*/) const {}
};

std::string differs(const std::string& what, const std::string& expected,
                    const std::string& found) {
  return expected == found ? ""
                           : what + "\n  expected: «" + expected + "»\n  found:    «" + found + "»";
}

std::string nextWord(std::string& line) {
  const auto blank = line.find(' ');
  std::string word = line.substr(0, blank);
  line.erase(0, blank == std::string::npos ? blank : blank + 1);
  return word;
}

}  // namespace

std::string unescaped(const std::string& text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\' || i + 1 == text.size()) {
      plain += text[i];
      continue;
    }
    const char code = text[++i];
    if (code == 'x') {
      plain += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
      i += 2;
    } else {
      plain += code == 'r' ? '\r' : code == 'n' ? '\n' : code == 't' ? '\t' : '\0';
    }
  }
  return plain;
}

Engineer::Engineer(std::string homeFolder, FileSystem* files)
    : realFiles(posixFileSystem(codePage())),
      home(std::move(homeFolder)),
      program(Platform{files != nullptr ? *files : *realFiles, environment, clock, programs},
              [this](const Message& message) {
                messages.push_back(message.title.empty() ? message.text
                                                         : message.title + ": " + message.text);
                if (message.buttons == Buttons::ok || answers.empty()) return message.enter;
                const Answer answer = answers.front();
                answers.pop_front();
                return answer;
              }) {
  environment.home = home;
  program.wizard.endProcess = [this] { ended = true; };
  for (const auto& designed : designedControls(program.wizard.form, form1Design())) {
    controls_[std::string(designed.design->name)] = designed.control;
  }
  for (const auto& designed : designedControls(program.helper, exportHelperDesign())) {
    controls_[std::string(designed.design->name)] = designed.control;
  }
}

const ControlPointer& Engineer::control(const std::string& name) const {
  return controls_.at(name);
}

std::string Engineer::shown(const std::string& name) const {
  return std::visit(Shown{}, control(name));
}

std::string Engineer::carryOut(const std::string& line) {
  std::string rest = line;
  for (auto at = rest.find("{home}"); at != std::string::npos; at = rest.find("{home}")) {
    rest.replace(at, 6, home);
  }
  const std::string verb = nextWord(rest);
  const std::string whole = unescaped(rest);
  const std::string name = nextWord(rest);
  const std::string text = unescaped(rest);
  Form1& form = program.wizard.form;
  if (verb == "select") return form.PropertyList.select(std::stoi(whole)), "";
  if (verb == "answer") {
    static const std::map<std::string, Answer> words = {
        {"ok", Answer::ok}, {"cancel", Answer::cancel}, {"yes", Answer::yes}, {"no", Answer::no}};
    return answers.push_back(words.at(whole)), "";
  }
  if (verb == "menu") return (whole == "server" ? form.srvGuide : form.prpGuide).click(), "";
  if (verb == "rightclick") return form.Frame2.mouseDown(Frame::rightButton), "";
  if (verb == "folder") return std::filesystem::create_directories(home + "/" + whole), "";
  if (verb == "setenv") return environment.values[name] = text, "";
  if (verb == "close") return program.helper.window.unload(), "";
  if (verb == "time") return clock.now = std::stoi(whole), "";
  const std::string wrong = act(verb, name, text);
  const bool looksAtName = verb == "file" || verb == "shows" || verb == "at" || verb == "usable";
  return wrong == "?" ? look(verb, name, looksAtName ? text : whole) : wrong;
}

std::string Engineer::act(const std::string& verb, const std::string& name,
                          const std::string& rest) {
  const auto field = [&] { return std::get<TextField*>(control(name)); };
  if (verb == "type") return field()->edit(rest, rest.size()), "";
  if (verb == "letters") {
    for (const char letter : rest) {
      field()->edit(field()->text() + letter, field()->text().size() + 1);
    }
    return "";
  }
  if (verb == "click") return std::visit(Click{}, control(name)), "";
  if (verb == "focus") return field()->gotFocus(), "";
  if (verb == "leave") return field()->lostFocus(), "";
  if (verb == "caret") return field()->setCaret(std::stoul(rest)), field()->click(), "";
  if (verb == "enter") return field()->keyDown(13), "";
  if (verb == "choose") return std::get<DropDownList*>(control(name))->setText(rest), "";
  if (verb == "put") {
    std::ofstream(home + "/" + name, std::ios::binary) << rest;
    return "";
  }
  return "?";
}

std::string Engineer::look(const std::string& verb, const std::string& name,
                           const std::string& rest) {
  const WizardState& state = program.wizard.state;
  if (verb == "shows") return differs(name + " shows", rest, shown(name));
  if (verb == "at") {
    return differs(name + " caret", rest,
                   std::to_string(std::get<TextField*>(control(name))->caret()));
  }
  if (verb == "usable") {
    const auto* list = std::get_if<DropDownList*>(&control(name));
    const bool usable =
        list != nullptr ? (*list)->enabled() : std::get<TextField*>(control(name))->enabled();
    return differs(name + " usable", rest, usable ? "yes" : "no");
  }
  if (verb == "said") {
    if (messages.empty()) return "no message, expected: " + rest;
    const std::string message = messages.front();
    messages.pop_front();
    return differs("message", rest, message);
  }
  if (verb == "lines") {
    std::string lines;
    for (const std::string& line : program.wizard.form.PropertyList.lines()) lines += line + "|";
    return differs("lines", rest, lines);
  }
  if (verb == "started") {
    std::string all;
    for (const std::string& line : programs.started) all += line + "|";
    return differs("started", rest, all);
  }
  if (verb == "status") return differs("status", rest, statusText(program.wizard));
  if (verb == "counts") {
    return differs("counts", rest,
                   std::to_string(state.exportCount) + " " + std::to_string(state.historyCount) +
                       " " + std::to_string(state.alarmCount));
  }
  if (verb == "ended") return ended ? "" : "the program has not ended";
  if (verb == "file") {
    std::ifstream file(home + "/" + name, std::ios::binary);
    if (!file) return "no file " + name;
    return differs(name, rest, std::string(std::istreambuf_iterator<char>(file), {}));
  }
  if (verb == "nofile") {
    return std::ifstream(home + "/" + name) ? "there is a file " + name : "";
  }
  return "no such act: " + verb;
}

}  // namespace kova::test
