// SPDX-License-Identifier: MIT
// Loaded into a program ahead of its own libraries, ends it once its first window has been painted.
// The memory of the moment is appended to the file KOVA_FRAME. KOVA_FORM names a file for the list
// of the window's widgets; the mapped files go next to it.
//
// As a program of its own it is the baseline of a start: a window with the widgets of such a list,
// the same texts at the same places, without layouts and without a wizard; with a second argument,
// a window of the same size with 87 bare widgets.
#include <unistd.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMainWindow>
#include <QMenuBar>
#include <QMetaProperty>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QTimer>
#include <fstream>
#include <memory>

namespace {

using Parts = QList<QVariantMap>;

constexpr std::array shownProperties{"alignment",  "checked",      "currentIndex",    "frameShape",
                                     "geometry",   "lineWrapMode", "plainText",       "text",
                                     "textFormat", "title",        "widgetResizable", "wordWrap"};

/// The parent owns it.
template <class Widget>
QWidget* make(QWidget* parent) {
  return std::make_unique<Widget>(parent).release();
}

const std::map<QByteArray, QWidget* (*)(QWidget*)> makers = {
    {"QLabel", make<QLabel>},           {"QLineEdit", make<QLineEdit>},
    {"QCheckBox", make<QCheckBox>},     {"QPlainTextEdit", make<QPlainTextEdit>},
    {"QComboBox", make<QComboBox>},     {"QRadioButton", make<QRadioButton>},
    {"QListView", make<QListView>},     {"QPushButton", make<QPushButton>},
    {"QGroupBox", make<QGroupBox>},     {"QMenuBar", make<QMenuBar>},
    {"QScrollArea", make<QScrollArea>}, {"QWidget", make<QWidget>}};

QStringList entriesOf(const QWidget& shown) {
  QStringList entries;
  const auto* list = qobject_cast<const QComboBox*>(&shown);
  for (int entry = 0; list != nullptr && entry < list->count(); ++entry) {
    entries << list->itemText(entry);
  }
  for (const QAction* title : shown.inherits("QMenuBar") ? shown.actions() : QList<QAction*>()) {
    entries << title->text();
    for (const QAction* entry : title->menu()->actions()) entries << entry->text();
  }
  return entries;
}

QVariantMap propertiesOf(const QWidget& shown) {
  QVariantMap properties;
  for (const char* name : shownProperties) {
    const QVariant value = shown.property(name);
    const int index = shown.metaObject()->indexOfProperty(name);
    const bool isEnum = shown.metaObject()->property(index).isEnumType();
    if (value.isValid()) properties[name] = isEnum ? QVariant(value.toInt()) : value;
  }
  if (shown.font().bold()) properties["font"] = shown.font();
  const QWidget* parent = shown.isWindow() ? &shown : shown.parentWidget();
  properties["enabled"] = shown.isEnabledTo(parent);
  properties["visible"] = shown.isVisibleTo(parent);
  return properties;
}

/// Adds a widget and what it contains; `parent` is the index of what contains it.
void list(const QWidget& shown, qsizetype parent, Parts& parts) {
  const QMetaObject* kind = shown.metaObject();
  while (parent >= 0 && !makers.contains(kind->className())) kind = kind->superClass();
  const auto* label = qobject_cast<const QLabel*>(&shown);
  const auto number = parts.size();
  parts << QVariantMap{{"kind", QByteArray(kind->className())},
                       {"parent", parent},
                       {"entries", entriesOf(shown)},
                       {"leads", label != nullptr && label->buddy() != nullptr},
                       {"properties", propertiesOf(shown)}};
  if (const auto* area = qobject_cast<const QScrollArea*>(&shown)) {
    return list(*area->widget(), number, parts);
  }
  for (const QObject* child : shown.children()) {
    const auto* below = qobject_cast<const QWidget*>(child);
    const bool isPart = below != nullptr && below->objectName().startsWith("qt_");
    if (below != nullptr && !isPart && !below->isWindow()) list(*below, number, parts);
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
    std::ofstream(qgetenv("KOVA_FRAME").constData(), std::ios::app)
        << std::ifstream("/proc/self/smaps_rollup").rdbuf();
    if (QFile file(qEnvironmentVariable("KOVA_FORM")); file.open(QIODevice::WriteOnly)) {
      std::ofstream(qgetenv("KOVA_FORM") + ".maps") << std::ifstream("/proc/self/maps").rdbuf();
      Parts parts;
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

void fill(QWidget& made, const QVariantMap& part) {
  const QStringList entries = part["entries"].toStringList();
  if (auto* list = qobject_cast<QComboBox*>(&made)) list->addItems(entries);
  if (auto* bar = qobject_cast<QMenuBar*>(&made)) {
    QMenu* menu = bar->addMenu(entries.value(0));
    for (const QString& entry : entries.mid(1)) menu->addAction(entry);
  }
  if (part["leads"].toBool()) static_cast<QLabel&>(made).setBuddy(&made);
  const QVariantMap properties = part["properties"].toMap();
  for (auto property = properties.begin(); property != properties.end(); ++property) {
    made.setProperty(property.key().toLatin1(), property.value());
  }
}

void place(QWidget& made, const QVariantMap& part, QMainWindow& window) {
  if (auto* bar = qobject_cast<QMenuBar*>(&made)) return window.setMenuBar(bar);
  if (made.parentWidget() == &window) return window.setCentralWidget(&made);
  auto* area = qobject_cast<QScrollArea*>(made.parentWidget());
  if (area == nullptr) return;
  area->setWidget(&made);
  made.setMinimumSize(part["properties"].toMap()["geometry"].toRect().size());
}

}  // namespace

Q_COREAPP_STARTUP_FUNCTION(watch)

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QFile file(QString::fromLocal8Bit(argv[1]));
  if (!file.open(QIODevice::ReadOnly)) return 1;
  Parts parts;
  QDataStream stream(&file);
  stream >> parts;

  QMainWindow window;
  window.resize(parts.first()["properties"].toMap()["geometry"].toRect().size());
  QWidgetList made{&window};
  for (const QVariantMap& part : argc > 2 ? Parts() : parts.mid(1)) {
    made << makers.at(part["kind"].toByteArray())(made.at(part["parent"].toInt()));
    place(*made.last(), part, window);
    fill(*made.last(), part);
  }
  for (int i = 0; argc > 2 && i < 87; ++i) {
    make<QWidget>(&window)->setGeometry(i % 9 * 90, i / 9 * 60, 80, 24);
  }
  window.show();
  return QApplication::exec();
}
