// SPDX-License-Identifier: MIT
// Loaded into a program before its own libraries, ends it once its first window has been painted.
// Where KOVA_FRAME names a file, that gets the memory and the mapped files of the moment; where
// KOVA_FORM names one, that gets the list of the window's widgets for window.cpp.
#include <unistd.h>

#include <QAction>
#include <QComboBox>
#include <QCoreApplication>
#include <QEvent>
#include <QFile>
#include <QLabel>
#include <QMenuBar>
#include <QMetaProperty>
#include <QScrollArea>
#include <QTimer>
#include <algorithm>
#include <array>
#include <fstream>

namespace {

constexpr std::array shownProperties{"alignment",  "checked",      "currentIndex",    "frameShape",
                                     "geometry",   "lineWrapMode", "plainText",       "text",
                                     "textFormat", "title",        "widgetResizable", "wordWrap"};
/// What lies in these is theirs.
constexpr std::array closed{"QMenuBar", "QLineEdit", "QPlainTextEdit", "QComboBox", "QListView"};

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

QVariantMap propertiesOf(const QWidget& shown) {
  QVariantMap properties;
  for (const char* name : shownProperties) {
    const int index = shown.metaObject()->indexOfProperty(name);
    if (index < 0) continue;
    const QVariant value = shown.property(name);
    const bool isEnum = shown.metaObject()->property(index).isEnumType();
    properties[QString::fromLatin1(name)] = isEnum ? QVariant(value.toInt()) : value;
  }
  if (shown.font().bold()) properties[QStringLiteral("font")] = shown.font();
  const QWidget* parent = shown.isWindow() ? &shown : shown.parentWidget();
  properties[QStringLiteral("enabled")] = shown.isEnabledTo(parent);
  properties[QStringLiteral("visible")] = shown.isVisibleTo(parent);
  return properties;
}

/// Adds a widget and what lies in it; `parent` is the place of what it lies in.
void list(const QWidget& shown, int parent, QList<QVariantMap>& parts) {
  const QMetaObject* kind = shown.metaObject();
  while (!QByteArray(kind->className()).startsWith('Q')) kind = kind->superClass();
  const auto* label = qobject_cast<const QLabel*>(&shown);
  const auto number = static_cast<int>(parts.size());
  parts << QVariantMap{{"kind", QString::fromLatin1(kind->className())},
                       {"parent", parent},
                       {"entries", entriesOf(shown)},
                       {"leads", label != nullptr && label->buddy() != nullptr},
                       {"properties", propertiesOf(shown)}};
  if (std::any_of(closed.begin(), closed.end(),
                  [&](const char* name) { return shown.inherits(name); })) {
    return;
  }
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
    // It fires when what paints now is through and the frame is on the screen.
    QTimer::singleShot(0, this, [this] { report(); });
    return false;
  }

 private:
  [[noreturn]] void report() const {
    if (qEnvironmentVariableIsSet("KOVA_FRAME")) {
      std::ofstream(qgetenv("KOVA_FRAME").constData())
          << std::ifstream("/proc/self/smaps_rollup").rdbuf()
          << std::ifstream("/proc/self/maps").rdbuf();
    }
    if (QFile file(qEnvironmentVariable("KOVA_FORM")); file.open(QIODevice::WriteOnly)) {
      QList<QVariantMap> parts;
      list(*window_, -1, parts);
      QDataStream stream(&file);
      stream << parts;
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
