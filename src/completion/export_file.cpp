// SPDX-License-Identifier: MIT
#include "completion/export_file.h"

#include <string>
#include <utility>
#include <vector>

namespace kova {
namespace {

/// The folders on the way to `folder` that do not exist, the shallowest last.
std::vector<std::string> missingFolders(const FileSystem& files, const std::string& folder) {
  std::vector<std::string> missing;
  std::string path = folder;
  while (!path.empty() && !files.folderExists(files.path(path))) {
    missing.push_back(path);
    const auto cut = path.rfind(pathSeparator);
    if (cut == std::string::npos) throw Failure("there is no folder " + path + " to begin with");
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
    // A path with two separators in a row, or one at its end, names a folder twice.
    if (files.folderExists(path)) continue;
    files.createFolder(path);
    if (!files.folderExists(path)) throw Failure("the folder " + missing.back() + " does not stay");
  }
}

}  // namespace

void putHeader(Wizard& wizard, const std::string& fileName) {
  FileSystem& files = wizard.platform.files;
  try {
    makeFolders(files, wizard.form.ProjectDir.text());
    wizard.state.exportStream = files.create(files.path(fileName));
    wizard.state.exportStream->write(exportHeaderLine());
  } catch (const Failure& failure) {
    wizard.state.exportStream.reset();
    tell(wizard, std::string("Could not create exports.csv file : ") + failure.what());
  }
}

void writeExportRows(Wizard& wizard, TableGate& gate, const Path& file) {
  WizardState& state = wizard.state;
  const std::unique_ptr<OutputFile> stream = std::move(state.exportStream);
  std::string lines;
  for (std::int16_t i = 0; i < state.exportCount; ++i) {
    lines += exportDataLine(state.exportTable[static_cast<std::size_t>(i)], i);
  }
  stream->write(lines);
  gate.letPass(file, *stream);
  state.onDisk.properties = PackedTexts(state.exportTable, state.exportCount);
}

}  // namespace kova
