// SPDX-License-Identifier: MIT
// Acts that are measured as whole processes, and what they are measured against:
//   done HOME REPOSITORY [NAME]  how long a Done takes with copies, everything selected before and,
//                                if there is a name, something in every file changed to it
//   plain HOME REPOSITORY        how long system calls take to write the same files
//   read HOME REPOSITORY         how long they take to read them
//   backup FOLDER                backs the files of a folder up
#include <fcntl.h>
#include <unistd.h>

#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <stdexcept>

#include "support/engineer.h"
#include "tables/backup.h"

namespace {

using kova::test::Engineer;

/// Seconds on the clock on the wall and seconds of this process's work.
struct Taken {
  double wall = 0;
  double work = 0;
};

Taken taken(const std::function<void()>& act) {
  const auto now = [](clockid_t clock) {
    timespec time{};
    ::clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
  };
  const Taken start{now(CLOCK_MONOTONIC), now(CLOCK_PROCESS_CPUTIME_ID)};
  act();
  return {now(CLOCK_MONOTONIC) - start.wall, now(CLOCK_PROCESS_CPUTIME_ID) - start.work};
}

void changeAll(kova::WizardState& state, const std::string& name) {
  state.project.deviceNames.front() = name;
  for (auto& row : state.project.historyTable) row.tolerance = name;
  for (auto& row : state.project.alarmTable) row.mask = name;
  for (auto& row : state.project.exportTable) {
    row.description = name;
    if (!row.devices.empty()) row.devices.front() = name;
  }
}

Taken done(const std::string& home, const std::string& repository, const std::string& name) {
  Engineer engineer(home);
  engineer.environment.values["FEC_HOME"] = repository;
  engineer.start();
  engineer.field("ExportName").edit("BENCH", 5);
  kova::Form1& form = engineer.program.wizard.form;
  const std::size_t rows = form.PropertyList.lines().size();
  for (std::size_t row = 0; row < rows; ++row) {
    form.PropertyList.select(static_cast<std::int32_t>(row));
  }
  if (!name.empty()) changeAll(engineer.program.wizard.state, name);
  form.vbProject.setValue(0);
  engineer.answers.push_back(kova::Answer::yes);
  // What the entry has written; the system brings it to the disk while the engineer works.
  ::sync();
  const Taken result = taken([&] { form.Command1.click(); });
  if (!engineer.ended || rows == 0) throw std::runtime_error("the project is not finished");
  return result;
}

void writePlainly(const std::string& folder, const std::string& name, const std::string& content) {
  const std::string hidden = folder + "/." + name + "~";
  const int file = ::open(hidden.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  const auto size = static_cast<ssize_t>(content.size());
  if (file == -1 || ::write(file, content.data(), content.size()) != size || ::fsync(file) != 0 ||
      ::close(file) != 0 || ::rename(hidden.c_str(), (folder + '/' + name).c_str()) != 0) {
    throw std::runtime_error("a system call failed");
  }
}

Taken plain(const std::string& home, const std::string& repository) {
  const std::string project = home + "/BENCH";
  const std::string copies = repository + "/BENEQM";
  std::vector<std::pair<std::string, std::string>> files;
  for (const auto& entry : std::filesystem::directory_iterator(copies)) {
    std::ifstream file(entry.path(), std::ios::binary);
    files.emplace_back(entry.path().filename().native(),
                       std::string(std::istreambuf_iterator<char>(file), {}));
  }
  return taken([&] {
    for (const auto& [name, content] : files) {
      writePlainly(project, name, content);
      writePlainly(copies, name, content);
    }
    const int folder = ::open(project.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (::fsync(folder) != 0 || ::close(folder) != 0) throw std::runtime_error("no flush");
  });
}

Taken read(const std::string& home, const std::string& repository) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(repository + "/BENEQM")) {
    files.push_back(entry.path());
    files.push_back(std::filesystem::path(home + "/BENCH") / entry.path().filename());
  }
  return taken([&] {
    for (const auto& file : files) {
      std::string bytes(std::filesystem::file_size(file), '\0');
      std::ifstream(file, std::ios::binary)
          .read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }
  });
}

Taken backup(const std::string& folder) {
  const kova::CodePage page = kova::CodePage::windows1252();
  const auto files = kova::realFileSystem(page);
  return taken(
      [&] { kova::backupExistingFiles(*files, kova::test::FakeClock(), files->path(folder)); });
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> words(argv + 1, argv + argc);
  try {
    const std::string name = words.size() > 3 ? words[3] : "";
    const Taken result = words.at(0) == "done"    ? done(words.at(1), words.at(2), name)
                         : words.at(0) == "plain" ? plain(words.at(1), words.at(2))
                         : words.at(0) == "read"  ? read(words.at(1), words.at(2))
                                                  : backup(words.at(1));
    std::cout << result.wall << ' ' << result.work << '\n';
  } catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 1;
  }
  return 0;
}
