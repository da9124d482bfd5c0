// SPDX-License-Identifier: MIT
// Connects every handler to its control.
#pragma once

#include "core/wizard.h"
#include "identity/export_helper.h"

namespace kova {

/// The program without its view: the wizard and its guided dialog, all handlers connected.
struct SetupWizard {
  SetupWizard(const Platform& machine, MessageBox messageBox);

  /// Loads the main window with its defaults and the project of the home directory, if any, and
  /// shows it. A view must have connected itself to the controls before.
  void start();

  Wizard wizard;
  ExportHelper helper;
};

}  // namespace kova
