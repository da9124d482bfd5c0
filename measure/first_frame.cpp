// SPDX-License-Identifier: MIT
// Loaded into a program ahead of its own libraries, ends it once its first window has been painted,
// and tells the moment, its processor time, the window's size, the memory and the files that are
// mapped then. Where KOVA_FORM names a file, that gets the list of the window's widgets.
#include <unistd.h>

#include <QAction>
#include <QComboBox>
#include <QCoreApplication>
#include <QEvent>
#include <QFile>
#include <QLabel>
#include <QMenuBar>
#include <QScrollArea>
#include <QTimer>
#include <algorithm>
#include <array>
#include <chrono>
#include <ctime>
#include <fstream>
#include <iostream>

#include "form_part.h"

namespace {

using kova::measure::FormPart;

/// Of what a form may consist. Whatever else there is shows nothing of its own.
constexpr std::array kinds{"QMainWindow", "QMenuBar",  "QLineEdit", "QPlainTextEdit",
                           "QCheckBox",   "QComboBox", "QLabel",    "QRadioButton",
                           "QPushButton", "QListView", "QGroupBox", "QScrollArea"};
/// What lies in these is theirs.
constexpr std::array closed{"QMenuBar", "QLineEdit", "QPlainTextEdit", "QComboBox", "QListView"};

template <class Names>
QString firstOf(const Names& names, const QWidget& shown) {
  const auto found = std::find_if(names.begin(), names.end(),
                                  [&](const char* name) { return shown.inherits(name); });
  return found == names.end() ? QString() : QString::fromLatin1(*found);
}

QString textOf(const QWidget& shown) {
  for (const char* name : {"text", "title", "plainText"}) {
    const QVariant text = shown.property(name);
    if (text.isValid()) return text.toString();
  }
  return {};
}

QStringList entriesOf(const QWidget& shown) {
  QStringList entries;
  if (const auto* list = qobject_cast<const QComboBox*>(&shown)) {
    for (int entry = 0; entry < list->count(); ++entry) entries << list->itemText(entry);
  } else if (qobject_cast<const QMenuBar*>(&shown) != nullptr) {
    for (const QAction* title : shown.actions()) {
      entries << title->text();
      for (const QAction* entry : title->menu()->actions()) entries << entry->text();
    }
  }
  return entries;
}

FormPart partOf(const QWidget& shown, int parent) {
  const QString kind = firstOf(kinds, shown);
  FormPart part;
  part.parent = parent;
  part.kind = kind.isEmpty() ? QStringLiteral("QWidget") : kind;
  part.place = shown.geometry();
  part.text = textOf(shown);
  part.entries = entriesOf(shown);
  part.chosen = shown.property("currentIndex").toInt();
  part.enabled = parent < 0 || shown.isEnabledTo(shown.parentWidget());
  part.visible = parent < 0 || shown.isVisibleTo(shown.parentWidget());
  part.checked = shown.property("checked").toBool();
  part.bold = shown.font().bold();
  if (const auto* label = qobject_cast<const QLabel*>(&shown)) {
    part.alignment = static_cast<int>(label->alignment());
    part.wraps = label->wordWrap();
    part.leads = label->buddy() != nullptr;
  }
  return part;
}

void list(const QWidget& shown, int parent, QList<FormPart>& parts) {
  const auto number = static_cast<int>(parts.size());
  parts << partOf(shown, parent);
  if (!firstOf(closed, shown).isEmpty()) return;
  if (const auto* area = qobject_cast<const QScrollArea*>(&shown)) {
    return list(*area->widget(), number, parts);
  }
  for (const QObject* child : shown.children()) {
    const auto* below = qobject_cast<const QWidget*>(child);
    if (below != nullptr && !below->isWindow()) list(*below, number, parts);
  }
}

class FirstFrame : public QObject {
 public:
  using QObject::QObject;

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::Paint || window_ != nullptr) return false;
    window_ = static_cast<QWidget*>(watched)->window();
    // It fires when what paints now is through and the frame stands.
    QTimer::singleShot(0, this, [this] { report(); });
    return false;
  }

 private:
  [[noreturn]] void report() const {
    const std::chrono::duration<double> now = std::chrono::steady_clock::now().time_since_epoch();
    timespec work{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &work);
    std::cout << std::fixed << now.count() << ' ' << work.tv_sec << ' ' << work.tv_nsec << ' '
              << window_->width() << ' ' << window_->height() << '\n'
              << std::ifstream("/proc/self/smaps_rollup").rdbuf()
              << std::ifstream("/proc/self/maps").rdbuf() << std::flush;
    if (QFile file(qEnvironmentVariable("KOVA_FORM")); file.open(QIODevice::WriteOnly)) {
      QList<FormPart> parts;
      list(*window_, -1, parts);
      QDataStream to(&file);
      to << parts;
      file.close();
    }
    ::_exit(0);
  }

  const QWidget* window_ = nullptr;
};

void watch() {
  qApp->installEventFilter(std::make_unique<FirstFrame>(qApp).release());
}

}  // namespace

Q_COREAPP_STARTUP_FUNCTION(watch)
