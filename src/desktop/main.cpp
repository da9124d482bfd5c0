// SPDX-License-Identifier: MIT
// The program: the machine, the wizard and its window.
#include <QApplication>
#include <QIcon>
#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <string_view>

#include "desktop/main_view.h"
#include "platform/machine.h"
#include "wizard/wiring.h"

namespace {

/// Without a display the toolkit aborts with an unhelpful message.
bool hasDisplay(int argc, char** argv) {
  const auto selectsPlatform = [](const char* argument) {
    return std::string_view(argument).find("-platform") != std::string_view::npos;
  };
  return qEnvironmentVariableIsSet("QT_QPA_PLATFORM") || kova::missingDisplay().empty() ||
         std::any_of(argv, argv + argc, selectsPlatform);
}

/// Replaces the toolkit's messages when it can't open the display, and ends the process.
void reportDisplay(QtMsgType type, const QMessageLogContext& /*context*/, const QString& /*text*/) {
  if (type != QtFatalMsg) return;
  std::cerr << "kova-setup-wizard can't open its display: DISPLAY is \""
            << qgetenv("DISPLAY").constData() << "\".\n";
  std::_Exit(1);
}

}  // namespace

int main(int argc, char** argv) {
  const kova::CodePage codePage = kova::CodePage::ofLocale();
  if (!hasDisplay(argc, argv)) {
    std::cerr << "kova-setup-wizard needs a display: " << kova::missingDisplay() << ".\n";
    return 1;
  }
  qInstallMessageHandler(&reportDisplay);
  const QApplication application(argc, argv);
  qInstallMessageHandler(nullptr);
  QApplication::setApplicationName(QStringLiteral("kova-setup-wizard"));
  QApplication::setDesktopFileName(QStringLiteral("kova-setup-wizard"));
  // A resource, as searching the desktop's icon themes would take a sixth of the start.
  QApplication::setWindowIcon(QIcon(QStringLiteral(":/icon.png")));
  const kova::Machine machine = kova::realMachine(codePage);
  kova::SetupWizard setup(machine.platform(), {});
  kova::DraftFolder drafts(kova::stateHome(), codePage);
  kova::MainView view(setup, codePage, &drafts);
  setup.start();
  view.reportDrafts();
  return QApplication::exec();
}
