// SPDX-License-Identifier: MIT
#include "completion/export_file.h"

#include <algorithm>
#include <optional>

#include "completion/replace_table.h"

namespace kova {
namespace {

/// Shallowest folder on the way to `folder` that does not exist, or nothing.
std::optional<std::string> firstMissing(const FileSystem& files, const std::string& folder) {
  std::optional<std::string> missing;
  std::string path = folder;
  while (!path.empty() && !files.folderExists(files.path(path))) {
    missing = path;
    const auto cut = path.rfind(pathSeparator);
    if (cut == std::string::npos) throw Failure("there is no folder " + path + " to begin with");
    path.resize(cut);
  }
  return missing;
}

/// Makes the chain of folders from the top down, one a pass.
void makeFolders(FileSystem& files, const std::string& folder) {
  if (folder.empty()) throw Failure("no project directory is given");
  auto passes = std::count(folder.begin(), folder.end(), pathSeparator) + 1;
  while (const auto missing = firstMissing(files, folder)) {
    if (passes-- == 0) throw Failure("the folder " + *missing + " does not stay");
    files.createFolder(files.path(*missing));
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

void writeExportRows(Wizard& wizard, const Path& file) {
  WizardState& state = wizard.state;
  const std::unique_ptr<OutputFile> stream = std::move(state.exportStream);
  std::string lines;
  for (std::int16_t i = 0; i < state.exportCount; ++i) {
    lines += exportDataLine(state.exportTable[static_cast<std::size_t>(i)], i);
  }
  stream->write(lines);
  replaceTable(wizard, file, [&] { stream->close(); });
  state.onDisk.properties = PackedTexts(state.exportTable, state.exportCount);
}

}  // namespace kova
