// SPDX-License-Identifier: MIT
// The layer of a start: a window with the widgets of a list (form_part.h), the same texts at the
// same places, without layouts and without a wizard.
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

#include "form_part.h"

namespace {

using kova::measure::FormPart;

/// The parent owns it.
template <class Widget, class... Arguments>
Widget* put(QWidget* parent, const Arguments&... arguments) {
  return std::make_unique<Widget>(arguments..., parent).release();
}

QWidget* makeText(const FormPart& part, QWidget* parent) {
  auto* label = put<QLabel>(parent, part.text);
  label->setTextFormat(Qt::PlainText);
  label->setAlignment(Qt::Alignment(part.alignment));
  label->setWordWrap(part.wraps);
  if (part.leads) label->setBuddy(label);
  return label;
}

QWidget* makeBox(const FormPart& part, QWidget* parent) {
  auto* box = put<QPlainTextEdit>(parent, part.text);
  box->setLineWrapMode(QPlainTextEdit::NoWrap);
  return box;
}

QWidget* makeList(const FormPart& part, QWidget* parent) {
  auto* list = put<QComboBox>(parent);
  list->addItems(part.entries);
  list->setCurrentIndex(part.chosen);
  return list;
}

QWidget* makeMenu(const FormPart& part, QWidget* parent) {
  auto* bar = put<QMenuBar>(parent);
  QMenu* menu = bar->addMenu(part.entries.value(0));
  for (const QString& entry : part.entries.mid(1)) menu->addAction(entry);
  return bar;
}

QWidget* makeArea(QWidget* parent) {
  auto* area = put<QScrollArea>(parent);
  area->setWidgetResizable(true);
  area->setFrameShape(QFrame::NoFrame);
  return area;
}

QWidget* make(const FormPart& part, QWidget* parent) {
  if (part.kind == u"QLabel") return makeText(part, parent);
  if (part.kind == u"QLineEdit") return put<QLineEdit>(parent, part.text);
  if (part.kind == u"QPlainTextEdit") return makeBox(part, parent);
  if (part.kind == u"QCheckBox") return put<QCheckBox>(parent, part.text);
  if (part.kind == u"QRadioButton") return put<QRadioButton>(parent, part.text);
  if (part.kind == u"QPushButton") return put<QPushButton>(parent, part.text);
  if (part.kind == u"QComboBox") return makeList(part, parent);
  if (part.kind == u"QListView") return put<QListView>(parent);
  if (part.kind == u"QGroupBox") return put<QGroupBox>(parent, part.text);
  if (part.kind == u"QMenuBar") return makeMenu(part, parent);
  if (part.kind == u"QScrollArea") return makeArea(parent);
  return put<QWidget>(parent);
}

void place(QWidget& made, const FormPart& part) {
  if (auto* area = qobject_cast<QScrollArea*>(made.parentWidget())) {
    area->setWidget(&made);
    made.setMinimumSize(part.place.size());
  } else {
    made.setGeometry(part.place);
  }
  if (auto* button = qobject_cast<QAbstractButton*>(&made)) button->setChecked(part.checked);
  if (part.bold) {
    QFont heavy;
    heavy.setBold(true);
    made.setFont(heavy);
  }
  made.setEnabled(part.enabled);
  made.setVisible(part.visible);
}

}  // namespace

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QFile file(QString::fromLocal8Bit(argv[1]));
  QList<FormPart> parts;
  if (!file.open(QIODevice::ReadOnly)) return 1;
  QDataStream list(&file);
  list >> parts;

  QMainWindow window;
  window.resize(parts.first().place.size());
  QWidgetList made{&window};
  for (const FormPart& part : parts.mid(1)) {
    QWidget* const parent = made.at(part.parent);
    made << make(part, parent);
    place(*made.last(), part);
    auto* bar = qobject_cast<QMenuBar*>(made.last());
    if (bar != nullptr) window.setMenuBar(bar);
    if (bar == nullptr && parent == &window) window.setCentralWidget(made.last());
  }
  window.show();
  return QApplication::exec();
}
