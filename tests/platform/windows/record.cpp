// SPDX-License-Identifier: MIT
// A program that a test starts: it notes how it was started, in the file that KOVA_RECORD names.
#include <windows.h>

#include <filesystem>
#include <fstream>

int main() {
  STARTUPINFOA window{};
  ::GetStartupInfoA(&window);
  const std::string file = std::getenv("KOVA_RECORD");
  std::ofstream(file + ".new") << ::GetCommandLineA() << '|' << window.wShowWindow;
  std::filesystem::rename(file + ".new", file);
}
