// SPDX-License-Identifier: MIT
#include "core/environment_values.h"

namespace kova {
namespace {

std::string notUsedMessage(const Environment& environment, const std::string& name) {
  if (!environment.isUnusable(name)) return {};
  return name + " is not used: its value has characters that this system's code page (" +
         environment.codePageName() + ") lacks. ";
}

NamedFolder folderOf(const Environment& environment, const std::string& name) {
  return {environment.variable(name), notUsedMessage(environment, name)};
}

}  // namespace

NamedFolder homeDrive(const Environment& environment) {
  NamedFolder drive = folderOf(environment, "HOMEDRIVE");
  if (!drive.text.empty()) return drive;
  drive.text = environment.homeFolder();
  drive.notUsed += notUsedMessage(environment, "HOME");
  if (drive.text.empty()) {
    drive.notUsed += "No home directory can be named in " + environment.codePageName() +
                     ". Type the project directory into Project Directory. ";
  }
  return drive;
}

NamedFolder repositoryRoot(const Environment& environment) {
  NamedFolder root = folderOf(environment, "FEC_HOME");
  if (root.text.empty() && root.notUsed.empty()) root = folderOf(environment, "FECDB");
  return root;
}

}  // namespace kova
