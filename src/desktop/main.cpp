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

/// The toolkit would abort without a word that helps.
bool hasDisplay(int argc, char** argv) {
  const auto namesPlatform = [](const char* argument) {
    return std::string_view(argument).find("-platform") != std::string_view::npos;
  };
  return qEnvironmentVariableIsSet("QT_QPA_PLATFORM") || kova::missingDisplay().empty() ||
         std::any_of(argv, argv + argc, namesPlatform);
}

/// The toolkit ends the process without a display, and before that says a lot of its own parts.
void tellOfDisplay(QtMsgType type, const QMessageLogContext& /*context*/, const QString& /*text*/) {
  if (type != QtFatalMsg) return;
  std::cerr << "kova-setup-wizard needs a display, and the one that it was given does not answer: "
            << "DISPLAY is \"" << qgetenv("DISPLAY").constData() << "\".\n";
  std::_Exit(1);
}

}  // namespace

int main(int argc, char** argv) {
  const kova::CodePage codePage = kova::CodePage::ofLocale();
  if (!hasDisplay(argc, argv)) {
    std::cerr << "kova-setup-wizard needs a display: " << kova::missingDisplay() << ".\n";
    return 1;
  }
  qInstallMessageHandler(&tellOfDisplay);
  const QApplication application(argc, argv);
  qInstallMessageHandler(nullptr);
  QApplication::setApplicationName(QStringLiteral("kova-setup-wizard"));
  QApplication::setDesktopFileName(QStringLiteral("kova-setup-wizard"));
  // Found without a search of the desktop's icon themes, which would take a sixth of the start.
  QApplication::setWindowIcon(QIcon(QStringLiteral(":/icon.png")));
  const kova::Machine machine = kova::realMachine(codePage);
  kova::SetupWizard setup(machine.platform(), {});
  const kova::MainView view(setup, codePage);
  setup.start();
  return QApplication::exec();
}
