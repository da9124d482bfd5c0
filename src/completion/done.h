// SPDX-License-Identifier: MIT
// The Done button: writes all tables, copies them into the repository, starts the generators.
#pragma once

#include <optional>
#include <string>

#include "core/wizard.h"

namespace kova {

void Command1_Click(Wizard& wizard);

/// The part of Done that writes: every table of the project, and a copy of each into the folder of
/// the repository if there is one to be updated. False if it ends ahead of its time, of which a
/// message has told then.
bool writeProject(Wizard& wizard, const std::optional<std::string>& repositoryPath);

/// Copies a file into a directory whose text ends in a separator, and makes the directory's last
/// level. Does nothing if there is no `source`; shows a message if it can't be copied.
void copyCsvFile(const Wizard& wizard, const std::string& source, const std::string& dest);

}  // namespace kova
