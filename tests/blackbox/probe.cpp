// SPDX-License-Identifier: MIT
// Shows the program's windows in a font and a palette, names what is cut or out of reach, and takes
// pictures: probe POINTS light|dark PICTURES
#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QScrollArea>
#include <QStyleOption>
#include <QTimer>
#include <cstdio>
#include <functional>

#include "desktop/main_view.h"
#include "platform/machine.h"

namespace {

/// Room for all that a widget says. What scrolls or wraps is content with less than it asks for.
QSize neededBy(const QWidget& shown) {
  if (const auto* label = qobject_cast<const QLabel*>(&shown);
      label != nullptr && label->wordWrap()) {
    return {0, label->heightForWidth(label->width())};
  }
  QSize needed = shown.minimumSizeHint();
  if (qobject_cast<const QLabel*>(&shown) != nullptr ||
      qobject_cast<const QAbstractButton*>(&shown) != nullptr) {
    needed = shown.sizeHint();
  }
  if (const auto* list = qobject_cast<const QComboBox*>(&shown)) {
    QStyleOptionComboBox option;
    option.initFrom(list);
    const QRect text = list->style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                     QStyle::SC_ComboBoxEditField, list);
    for (int entry = 0; entry < list->count(); ++entry) {
      const int width = list->fontMetrics().horizontalAdvance(list->itemText(entry));
      needed = needed.expandedTo({list->width() - text.width() + width, 0});
    }
  }
  if (const auto* field = qobject_cast<const QLineEdit*>(&shown)) {
    constexpr int edges = 12;
    needed = needed.expandedTo({field->fontMetrics().horizontalAdvance(field->text()) + edges, 0});
  }
  return needed;
}

// Of a place on a screen whose scale is no whole number.
constexpr int rounding = 1;

class Probe {
 public:
  explicit Probe(QString pictures) : pictures_(std::move(pictures)) {}

  void look(QWidget& window, const char* name) {
    QApplication::processEvents();
    for (const QWidget* shown : window.findChildren<QWidget*>()) {
      const QSize needed = neededBy(*shown);
      const QSize room = shown->size() + QSize(rounding, rounding);
      if (shown->isVisible() && needed.expandedTo(room) != room) {
        tell(*shown, name, shown->size(), needed);
      }
    }
    window.grab().save(QStringLiteral("%1-%2.png").arg(pictures_, QString::fromLatin1(name)));
  }

  /// Nobody has to scroll to a button.
  void press(const QWidget& window) {
    for (const auto* button : window.findChildren<QAbstractButton*>()) {
      const QSize seen = button->visibleRegion().boundingRect().size();
      if (button->isVisible() && seen != button->size())
        tell(*button, "press", seen, button->size());
    }
  }

  /// What has the focus must be in sight, or as much of it as there is room for.
  void reach(QWidget& window) {
    window.activateWindow();
    auto& area = *window.findChild<QScrollArea*>();
    for (QWidget* shown : area.widget()->findChildren<QWidget*>()) {
      if (!shown->isEnabled() || (shown->focusPolicy() & Qt::TabFocus) == 0) continue;
      shown->setFocus(Qt::TabFocusReason);
      QApplication::processEvents();
      const QRect place(shown->mapTo(&area, QPoint()), shown->size());
      const QSize wanted = shown->size().boundedTo(area.viewport()->size());
      const QSize seen = (place & area.viewport()->geometry()).size();
      if (seen != wanted) tell(*shown, "reach", seen, wanted);
    }
  }

  /// A message that an act brings up.
  void lookAtMessage(const char* name, const std::function<void()>& act) {
    QTimer timer;
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, &timer, [this, name] {
      QWidget* box = QApplication::activeModalWidget();
      if (box == nullptr) return;
      look(*box, name);
      box->close();
      ++messages_;
    });
    timer.start(0);
    act();
  }

  bool passed() const { return wrong_ == 0 && messages_ == 2; }

 private:
  void tell(const QWidget& shown, const char* name, QSize size, QSize needed) {
    ++wrong_;
    std::printf("%s %s: %s %s has %dx%d of %dx%d\n", qPrintable(pictures_.section(u'/', -1)), name,
                shown.metaObject()->className(), qPrintable(shown.objectName()), size.width(),
                size.height(), needed.width(), needed.height());
  }

  QString pictures_;
  int wrong_ = 0;
  int messages_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  if (argc != 4) return 2;
  QApplication::setStyle(QStringLiteral("Fusion"));
  QFont font = QApplication::font();
  font.setPointSizeF(QByteArray(argv[1]).toDouble());
  QApplication::setFont(font);
  if (QByteArray(argv[2]) == "dark") QApplication::setPalette(QPalette(QColor(45, 45, 48)));

  const kova::CodePage codePage = kova::CodePage::ofLocale();
  const kova::Machine machine = kova::realMachine(codePage);
  kova::SetupWizard setup(machine.platform(), {});
  kova::MainView view(setup, codePage);
  setup.start();
  kova::Form1& form = setup.wizard.form;
  Probe probe(QString::fromLocal8Bit(argv[3]));
  form.ExportName.setText("MAGNET");
  probe.lookAtMessage("warning", [&] { form.LocalName.setText("TOOLONG"); });
  form.PropertyName.setText("CURRENT");
  probe.lookAtMessage("question", [&] { form.AddProperty.click(); });
  constexpr QSize screen(1024, 768);
  constexpr QSize frame(4, 28);
  view.resize(view.sizeHint().boundedTo(screen / view.devicePixelRatioF() - frame));
  probe.look(view, "screen");
  if (view.devicePixelRatioF() == 1 && font.pointSize() <= 12) probe.press(view);
  probe.reach(view);
  view.resize(view.sizeHint());
  probe.look(view, "whole");
  form.srvGuide.click();
  probe.look(view.helper(), "guide");
  return probe.passed() ? 0 : 1;
}
