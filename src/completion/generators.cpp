// SPDX-License-Identifier: MIT
#include "completion/generators.h"

#include <string>

#include "core/project_open.h"

namespace kova {
namespace {

void start(Wizard& wizard, const std::string& commandLine) {
  try {
    wizard.platform.programs.start(commandLine);
  } catch (const Failure& failure) {
    tell(wizard, "Could not start " + commandLine + " : " + failure.what());
  }
}

}  // namespace

void startGenerators(Wizard& wizard) {
  const std::string& project = projectDirectory(wizard);
  if (wizard.form.vbProject.ticked()) start(wizard, "vbskelgen.exe " + project);
  if (wizard.form.cProject.ticked()) start(wizard, "cskelgen.exe " + project + " LINUX");
}

}  // namespace kova
