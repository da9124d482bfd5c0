// SPDX-License-Identifier: MIT
// Ties every handler to its control.
#pragma once

#include "core/wizard.h"
#include "identity/export_helper.h"

namespace kova {

/// The whole program but its view: the wizard and its guided dialog, all handlers attached.
struct SetupWizard {
  SetupWizard(const Platform& machine, MessageBox messageBox);

  /// Loads the main window with its defaults and the project of the home directory, if there is
  /// one, and shows it. A view has hung itself on the controls before.
  void start();

  Wizard wizard;
  ExportHelper helper;
};

}  // namespace kova
