// SPDX-License-Identifier: MIT
// Baselines of a start: a window with the widgets of a list that first_frame.cpp has written, the
// same texts at the same places, without layouts and without a wizard. With a second argument, a
// window of the same size with 87 bare widgets.
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
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <memory>

namespace {

/// The parent owns it.
template <class Widget>
QWidget* make(QWidget* parent) {
  return std::make_unique<Widget>(parent).release();
}

QWidget* makeAny(const QVariantMap& part, QWidget* parent) {
  static const QHash<QString, QWidget* (*)(QWidget*)> makers = {
      {"QLabel", make<QLabel>},          {"QLineEdit", make<QLineEdit>},
      {"QCheckBox", make<QCheckBox>},    {"QPlainTextEdit", make<QPlainTextEdit>},
      {"QComboBox", make<QComboBox>},    {"QRadioButton", make<QRadioButton>},
      {"QListView", make<QListView>},    {"QPushButton", make<QPushButton>},
      {"QGroupBox", make<QGroupBox>},    {"QMenuBar", make<QMenuBar>},
      {"QScrollArea", make<QScrollArea>}};
  return makers.value(part["kind"].toString(), make<QWidget>)(parent);
}

void fill(QWidget& made, const QVariantMap& part) {
  const QStringList entries = part["entries"].toStringList();
  if (auto* list = qobject_cast<QComboBox*>(&made)) list->addItems(entries);
  if (auto* bar = qobject_cast<QMenuBar*>(&made)) {
    QMenu* menu = bar->addMenu(entries.value(0));
    for (const QString& entry : entries.mid(1)) menu->addAction(entry);
  }
  auto* label = qobject_cast<QLabel*>(&made);
  if (label != nullptr && part["leads"].toBool()) label->setBuddy(label);
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

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QFile file(QString::fromLocal8Bit(argv[1]));
  if (!file.open(QIODevice::ReadOnly)) return 1;
  QList<QVariantMap> parts;
  QDataStream stream(&file);
  stream >> parts;

  QMainWindow window;
  window.resize(parts.first()["properties"].toMap()["geometry"].toRect().size());
  QWidgetList made{&window};
  for (const QVariantMap& part : argc > 2 ? QList<QVariantMap>() : parts.mid(1)) {
    made << makeAny(part, made.at(part["parent"].toInt()));
    place(*made.last(), part, window);
    fill(*made.last(), part);
  }
  for (int i = 0; argc > 2 && i < 87; ++i) {
    make<QWidget>(&window)->setGeometry(i % 9 * 90, i / 9 * 60, 80, 24);
  }
  window.show();
  return QApplication::exec();
}
