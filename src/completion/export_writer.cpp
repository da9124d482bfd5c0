// SPDX-License-Identifier: MIT
#include "completion/export_writer.h"

#include <string>
#include <vector>

namespace kova {
namespace {

/// `folder` and its parents as far as they do not exist, the topmost last.
std::vector<std::string> missingFolders(const FileSystem& files, const std::string& folder) {
  std::vector<std::string> missing;
  std::string path = folder;
  while (!path.empty() && !files.folderExists(files.path(path))) {
    missing.push_back(path);
    const auto cut = path.find_last_of(pathSeparators);
    if (cut == std::string::npos) throw Failure("the folder " + path + " does not exist");
    path.resize(cut);
  }
  return missing;
}

/// Makes the chain of folders from the top down.
void makeFolders(FileSystem& files, const std::string& folder) {
  if (folder.empty()) throw Failure("no project directory is given");
  auto missing = missingFolders(files, folder);
  for (; !missing.empty(); missing.pop_back()) {
    const Path path = files.path(missing.back());
    // A path with a doubled or trailing separator names a folder twice.
    if (files.folderExists(path)) continue;
    files.createFolder(path);
    if (!files.folderExists(path)) throw Failure("the folder " + missing.back() + " disappeared");
  }
}

}  // namespace

std::unique_ptr<OutputFile> putHeader(FileSystem& files, const std::string& directory,
                                      const std::string& fileName) {
  makeFolders(files, directory);
  auto exportStream = files.create(files.path(fileName));
  exportStream->write(exportHeaderLine());
  return exportStream;
}

void writeExportRows(const Project& project, ProjectOnDisk& disk, OutputFile& exportStream,
                     TableWriter& tables, const Path& file) {
  std::string lines;
  for (std::int16_t i = 0; i < project.exportCount; ++i) {
    lines += exportDataLine(project.exportTable[static_cast<std::size_t>(i)], i);
  }
  exportStream.write(lines);
  tables.commit(file, exportStream);
  disk.properties = PackedTexts(project.exportTable, project.exportCount);
}

}  // namespace kova
