// SPDX-License-Identifier: MIT
#include <pwd.h>
#include <spawn.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <vector>

#include "platform/machine.h"
#include "platform/posix/calls.h"
#include "platform/split.h"

namespace kova {

namespace {

class PosixEnvironment final : public Environment {
 public:
  explicit PosixEnvironment(const CodePage& codePage) : codePage_(codePage) {}

  std::string variable(const std::string& name) const override {
    const char* value = std::getenv(name.c_str());
    return value == nullptr ? std::string() : textOf(value);
  }

  bool isUnusable(const std::string& name) const override {
    const char* value = std::getenv(name.c_str());
    return value != nullptr && !codePage_.survives(value);
  }

  std::string homeFolder() const override {
    if (std::string home = variable("HOME"); !home.empty()) return home;
    const passwd* account = ::getpwuid(::getuid());
    if (account != nullptr && *account->pw_dir != '\0') return textOf(account->pw_dir);
    // Projects meant for a home that can't be told are not to end up in the root.
    return isUnusable("HOME") ? "" : "/";
  }

  std::string codePageName() const override { return codePage_.name(); }

 private:
  std::string textOf(const char* native) const {
    return codePage_.survives(native) ? codePage_.fromNative(native) : std::string();
  }

  const CodePage& codePage_;
};

bool isPlainFile(const std::string& file) {
  struct stat state {};
  return ::stat(file.c_str(), &state) == 0 && S_ISREG(state.st_mode);
}

bool mayBeExecuted(const std::string& file) {
  return ::faccessat(AT_FDCWD, file.c_str(), X_OK, AT_EACCESS) == 0;
}

// Folders that depend on where the wizard stands are left out: a project directory must not be able
// to bring its own generator.
std::string findProgram(const std::string& program) {
  const char* searchPath = std::getenv("PATH");
  bool isThere = false;
  for (const auto folder : split(searchPath == nullptr ? "" : searchPath, ':')) {
    if (folder.front() != '/') continue;
    std::string file = std::string(folder) + '/' + program;
    if (!isPlainFile(file)) continue;
    if (mayBeExecuted(file)) return file;
    isThere = true;
  }
  throw Failure(program + (isThere ? " is on the search path but may not be executed"
                                   : " is not on the search path"));
}

void checkWords(const std::vector<std::string_view>& words) {
  if (words.empty()) throw Failure("The command line is empty");
  if (words.front().find('/') != std::string_view::npos) {
    throw Failure("A program is named without its folder");
  }
  for (const auto word : words) {
    if (word.front() == '-') {
      throw Failure('"' + std::string(word) + "\" would be taken for an option");
    }
    if (word.find('\0') != std::string_view::npos) throw Failure("A word holds a NUL");
  }
}

void check(int error) {
  if (error != 0) native::fail(error);
}

// What a started program gets: a session of its own, plain signals, nothing open.
class SpawnSettings {
 public:
  SpawnSettings() {
    check(::posix_spawnattr_init(&attributes_));
    check(::posix_spawn_file_actions_init(&actions_));
  }
  SpawnSettings(const SpawnSettings&) = delete;
  SpawnSettings& operator=(const SpawnSettings&) = delete;
  ~SpawnSettings() {
    ::posix_spawn_file_actions_destroy(&actions_);
    ::posix_spawnattr_destroy(&attributes_);
  }

  void detach() {
    sigset_t all{};
    sigset_t none{};
    sigfillset(&all);
    sigemptyset(&none);
    check(::posix_spawnattr_setsigdefault(&attributes_, &all));
    check(::posix_spawnattr_setsigmask(&attributes_, &none));
    check(::posix_spawnattr_setflags(
        &attributes_, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK));
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
      check(::posix_spawn_file_actions_addopen(&actions_, stream, "/dev/null", O_RDWR, 0));
    }
    check(::posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1));
  }

  void start(const std::string& file, std::vector<std::string>& words) const {
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (auto& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    pid_t process = 0;
    check(
        ::posix_spawn(&process, file.c_str(), &actions_, &attributes_, arguments.data(), environ));
  }

 private:
  posix_spawnattr_t attributes_{};
  posix_spawn_file_actions_t actions_{};
};

class PosixProgramStarter final : public ProgramStarter {
 public:
  explicit PosixProgramStarter(const CodePage& codePage) : codePage_(codePage) {}

  void start(std::string_view commandLine) override {
    const auto texts = split(commandLine, ' ');
    checkWords(texts);
    std::vector<std::string> words;
    words.reserve(texts.size());
    for (const auto text : texts) words.push_back(codePage_.toNative(text));
    const std::string file = findProgram(words.front());
    SpawnSettings settings;
    settings.detach();
    settings.start(file, words);
  }

 private:
  const CodePage& codePage_;
};

}  // namespace

std::unique_ptr<Environment> realEnvironment(const CodePage& codePage) {
  return std::make_unique<PosixEnvironment>(codePage);
}

std::unique_ptr<ProgramStarter> realProgramStarter(const CodePage& codePage) {
  return std::make_unique<PosixProgramStarter>(codePage);
}

std::vector<std::string> terminalWords(int argc, char** argv) {
  return {argv + std::min(argc, 1), argv + argc};
}

std::string missingDisplay() {
  const auto isSet = [](const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr && *value != '\0';
  };
  if (isSet("DISPLAY") || isSet("WAYLAND_DISPLAY")) return {};
  return "neither DISPLAY nor WAYLAND_DISPLAY is set";
}

}  // namespace kova
