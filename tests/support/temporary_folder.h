// SPDX-License-Identifier: MIT
// A folder of a test's own, removed with all that lies in it.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>
#include <string>

namespace kova::test {

/// Files are named by their path inside the folder.
struct TemporaryFolder {
  TemporaryFolder() {
    if (::mkdtemp(path_.data()) == nullptr) throw std::runtime_error("no temporary folder");
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  TemporaryFolder(TemporaryFolder&&) = delete;
  TemporaryFolder& operator=(TemporaryFolder&&) = delete;
  ~TemporaryFolder() { std::filesystem::remove_all(path_); }

  const std::string& path() const { return path_; }
  std::string path(const std::string& name) const { return path_ + '/' + name; }
  void write(const std::string& name, const std::string& bytes) const {
    std::ofstream(path(name), std::ios::binary) << bytes;
  }
  std::string read(const std::string& name) const {
    std::ifstream file(path(name), std::ios::binary);
    return file ? std::string(std::istreambuf_iterator<char>(file), {}) : "no file " + name;
  }
  /// Names of all entries, hidden ones too.
  std::set<std::string> names() const {
    std::set<std::string> all;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) {
      all.insert(entry.path().filename().native());
    }
    return all;
  }

 private:
  // mkdtemp puts letters of its own in place of the X.
  std::string path_ = (std::filesystem::temp_directory_path() / "kova-XXXXXX").native();
};

}  // namespace kova::test
