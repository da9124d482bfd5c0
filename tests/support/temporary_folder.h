// SPDX-License-Identifier: MIT
// A folder of a test's own, removed with all that lies in it.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <set>
#include <string>

namespace kova::test {

/// Bytes of files by name.
using Files = std::map<std::string, std::string>;

/// A path as the wizard's layers spell it: UTF-8 where the system's own is wide, else its bytes.
inline std::string nativeName(const std::filesystem::path& path) {
  const std::u8string name = path.u8string();
  return {name.begin(), name.end()};
}
inline std::filesystem::path systemPath(const std::string& native) {
  return std::u8string(native.begin(), native.end());
}

/// Every file below a folder, by its whole path.
inline Files filesBelow(const std::string& folder) {
  Files files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    std::ifstream file(entry.path(), std::ios::binary);
    if (entry.is_directory()) continue;
    files[nativeName(entry.path())] = {std::istreambuf_iterator(file), {}};
  }
  return files;
}

/// Files are named by their path inside the folder.
struct TemporaryFolder {
  TemporaryFolder() = default;
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  TemporaryFolder(TemporaryFolder&&) = delete;
  TemporaryFolder& operator=(TemporaryFolder&&) = delete;
  ~TemporaryFolder() { std::filesystem::remove_all(path_); }

  const std::string& path() const { return path_; }
  std::string path(const std::string& name) const {
    return nativeName((systemPath(path_) / systemPath(name)).make_preferred());
  }
  /// Makes the folders above the file as well.
  void write(const std::string& name, const std::string& bytes) const {
    std::filesystem::create_directories(systemPath(path(name)).parent_path());
    std::ofstream(systemPath(path(name)), std::ios::binary) << bytes;
  }
  bool has(const std::string& name) const {
    return std::filesystem::exists(systemPath(path(name)));
  }
  std::string read(const std::string& name) const {
    std::ifstream file(systemPath(path(name)), std::ios::binary);
    return file ? std::string(std::istreambuf_iterator<char>(file), {}) : "no file " + name;
  }
  /// The files of a folder. Backups of the clock in use are left out.
  Files files(const std::string& folder) const {
    Files all;
    for (const auto& entry : std::filesystem::directory_iterator(path(folder))) {
      const std::string name = nativeName(entry.path().filename());
      if (name.find("-17000") == std::string::npos)
        all[name] = read(nativeName(entry.path().lexically_relative(path())));
    }
    return all;
  }
  /// Names of all entries, hidden ones too.
  std::set<std::string> names() const {
    std::set<std::string> all;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) {
      all.insert(nativeName(entry.path().filename()));
    }
    return all;
  }

 private:
  static std::string made() {
    for (auto number = std::random_device{}();; ++number) {
      const auto folder =
          std::filesystem::temp_directory_path() / ("kova-" + std::to_string(number));
      if (std::filesystem::create_directory(folder)) return folder.string();
    }
  }

  std::string path_ = made();
};

}  // namespace kova::test
