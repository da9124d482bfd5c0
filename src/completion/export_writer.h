// SPDX-License-Identifier: MIT
// Writing the export table.
#pragma once

#include <memory>
#include <string>

#include "completion/table_writer.h"
#include "tables/project.h"

namespace kova {

/// Makes `directory` if necessary, starts a new file and writes the header line. Throws Failure.
std::unique_ptr<OutputFile> putHeader(FileSystem& files, const std::string& directory,
                                      const std::string& fileName);

/// Writes all rows to the stream and replaces the file by it. Throws Failure and leaves the file
/// unchanged.
void writeExportRows(const Project& project, ProjectOnDisk& disk, OutputFile& exportStream,
                     TableWriter& tables, const Path& file);

}  // namespace kova
