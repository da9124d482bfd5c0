// SPDX-License-Identifier: MIT
#include <windows.h>
// The system's own header stands ahead of it.
#include <shellapi.h>

#include <cstdlib>
#include <memory>

#include "platform/machine.h"
#include "platform/split.h"
#include "platform/windows/calls.h"

namespace kova {

namespace {

/// Value of a variable as UTF-8; empty if it is not set.
std::string valueOf(const std::string& name) {
  const std::wstring variable = native::wide(name);
  std::wstring value(::GetEnvironmentVariableW(variable.c_str(), nullptr, 0), L'\0');
  const auto size = static_cast<DWORD>(value.size());
  value.resize(::GetEnvironmentVariableW(variable.c_str(), value.data(), size));
  return native::narrow(value);
}

class WindowsEnvironment final : public Environment {
 public:
  explicit WindowsEnvironment(const CodePage& codePage) : codePage_(codePage) {}

  std::string variable(const std::string& name) const override {
    const std::string value = valueOf(name);
    return codePage_.survives(value) ? codePage_.fromNative(value) : std::string();
  }
  bool isUnusable(const std::string& name) const override {
    return !codePage_.survives(valueOf(name));
  }
  std::string homeFolder() const override { return "C:"; }
  std::string codePageName() const override { return codePage_.name(); }

 private:
  const CodePage& codePage_;
};

// Folders that depend on where the wizard stands are left out: a project directory must not be able
// to bring its own generator.
bool isAbsolute(std::string_view folder) {
  const bool startsAtDrive =
      folder.size() > 2 && folder[1] == ':' && (folder[2] == '\\' || folder[2] == '/');
  return startsAtDrive || folder.starts_with("\\\\");
}

bool endsInExe(std::string_view name) {
  constexpr int size = 4;
  return name.size() > size &&
         ::CompareStringOrdinal(native::wide(name.substr(name.size() - size)).c_str(), size,
                                L".exe", size, TRUE) == CSTR_EQUAL;
}

// Programs only: a batch file would bring a shell.
std::wstring findProgram(const std::string& program) {
  const std::string leaf = endsInExe(program) ? program : program + ".exe";
  const std::string searchPath = valueOf("PATH");
  for (auto folder : split(searchPath, ';')) {
    if (folder.size() > 2 && folder.front() == '"' && folder.back() == '"') {
      folder = folder.substr(1, folder.size() - 2);
    }
    if (!isAbsolute(folder)) continue;
    std::wstring file = native::nameOf(Path{std::string(folder)} / leaf);
    const DWORD attributes = ::GetFileAttributesW(file.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
      return file;
    }
  }
  throw Failure(program + " is not on the search path");
}

void checkWords(const std::vector<std::string_view>& words) {
  if (words.empty()) throw Failure("The command line is empty");
  if (words.front().find_first_of("\\/:") != std::string_view::npos) {
    throw Failure("A program is named without its folder");
  }
  for (const auto word : words) {
    if (word.front() == '-' || word.front() == '/') {
      throw Failure('"' + std::string(word) + "\" would be taken for an option");
    }
    if (word.find('\0') != std::string_view::npos) throw Failure("A word holds a NUL");
    // A program parts its words itself.
    if (word.find_first_of("\"\t\r\n") != std::string_view::npos) {
      throw Failure("A word holds a quotation mark or a tab");
    }
  }
}

class WindowsProgramStarter final : public ProgramStarter {
 public:
  explicit WindowsProgramStarter(const CodePage& codePage) : codePage_(codePage) {}

  void start(std::string_view commandLine) override {
    const auto words = split(commandLine, ' ');
    checkWords(words);
    const std::wstring file = findProgram(codePage_.toNative(words.front()));
    // As it stands: a folder may have two blanks in its name.
    std::wstring line = native::wide(codePage_.toNative(commandLine));
    STARTUPINFOW window{};
    window.cb = sizeof window;
    // Minimised, and with the focus, as the engineer expects of a generator.
    window.dwFlags = STARTF_USESHOWWINDOW;
    window.wShowWindow = SW_SHOWMINIMIZED;
    PROCESS_INFORMATION process{};
    constexpr DWORD flags = CREATE_NEW_CONSOLE | CREATE_DEFAULT_ERROR_MODE;
    native::checked(::CreateProcessW(file.c_str(), line.data(), nullptr, nullptr, FALSE, flags,
                                     nullptr, nullptr, &window, &process));
    const Handle task(process.hProcess);
    const Handle thread(process.hThread);
  }

 private:
  const CodePage& codePage_;
};

}  // namespace

std::unique_ptr<Environment> realEnvironment(const CodePage& codePage) {
  return std::make_unique<WindowsEnvironment>(codePage);
}

std::unique_ptr<ProgramStarter> realProgramStarter(const CodePage& codePage) {
  return std::make_unique<WindowsProgramStarter>(codePage);
}

std::string missingDisplay() {
  return {};
}

std::vector<std::string> terminalWords(int /*argc*/, char** /*argv*/) {
  static const UINT former = ::GetConsoleOutputCP();
  ::SetConsoleOutputCP(CP_UTF8);
  // The terminal outlives the program.
  std::atexit([] { ::SetConsoleOutputCP(former); });
  int count = 0;
  const std::unique_ptr<wchar_t*, decltype(&::LocalFree)> all(
      ::CommandLineToArgvW(::GetCommandLineW(), &count), &::LocalFree);
  std::vector<std::string> words;
  for (int word = 1; word < count; ++word) words.push_back(native::narrow(all.get()[word]));
  return words;
}

}  // namespace kova
