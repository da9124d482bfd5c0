// SPDX-License-Identifier: MIT
#include "desktop/review_page_view.h"

#include <QAccessible>
#include <QEvent>
#include <QStyle>
#include <QVBoxLayout>

#include "desktop/colours.h"
#include "desktop/text_seam.h"

namespace kova {
namespace {

constexpr int propertyRole = Qt::UserRole;
constexpr int wholeRole = Qt::UserRole + 1;
constexpr int widestColumn = 48;  // characters

QColor colourOf(Tone tone) {
  switch (tone) {
    case Tone::added:
      return {0, 160, 0};
    case Tone::removed:
      return {220, 0, 0};
    case Tone::changed:
      return {255, 160, 0};
    case Tone::plain:
      break;
  }
  return {};
}

/// A screen reader hears of the view that gets the focus, and not of the line that is current
/// there.
void tellCurrent(QWidget& view) {
  const QAccessibleInterface* shown = QAccessible::queryAccessibleInterface(&view);
  QAccessibleInterface* current = shown == nullptr ? nullptr : shown->focusChild();
  if (current == nullptr) return;
  QAccessibleEvent focus(current, QAccessible::Focus);
  QAccessible::updateAccessibility(&focus);
}

}  // namespace

ReviewPageView::ReviewPageView(const CodePage& codePage,
                               const std::function<void(const std::string&)>& chosen)
    : codePage_(codePage),
      heading_(new QLabel(this)),
      halves_(new QSplitter(this)),
      groups_(new QListWidget),
      lines_(new QTreeWidget),
      whole_(new QLabel(this)) {
  halves_->addWidget(groups_);
  halves_->addWidget(lines_);
  halves_->setStretchFactor(1, 1);
  halves_->setChildrenCollapsible(false);
  for (QLabel* label : {heading_, whole_}) {
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
  }
  groups_->setAccessibleName(QStringLiteral("Files"));
  lines_->setAccessibleName(QStringLiteral("Rows"));
  for (QWidget* view : std::initializer_list<QWidget*>{groups_, lines_}) {
    view->installEventFilter(this);
  }
  lines_->setUniformRowHeights(true);
  lines_->setAllColumnsShowFocus(true);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(heading_);
  layout->addWidget(halves_, 1);
  layout->addWidget(whole_);
  // Screen readers select a line without making it the current one.
  connect(groups_, &QListWidget::itemSelectionChanged, this, [this] {
    fillLines();
    if (moved) moved();
  });
  connect(lines_, &QTreeWidget::itemSelectionChanged, this, [this] {
    showWhole();
    if (moved) moved();
  });
  connect(lines_, &QTreeWidget::itemActivated, this, [chosen](QTreeWidgetItem* item) {
    const std::string property = item->data(0, propertyRole).toByteArray().toStdString();
    if (!property.empty()) chosen(property);
  });
}

void ReviewPageView::addBelow(QWidget* widget) {
  layout()->addWidget(widget);
}

void ReviewPageView::show(const ReviewPage& page) {
  if (page == page_) return;
  const bool sameColumns = page.columns == page_.columns;
  page_ = page;
  heading_->setText(shown(page_.heading));
  if (!sameColumns) {
    QStringList columns;
    for (const std::string& column : page_.columns) columns << shown(column);
    lines_->setHeaderLabels(columns);
  }
  fillGroups();
}

int ReviewPageView::currentGroup() const {
  const QList<QListWidgetItem*> selected = groups_->selectedItems();
  return selected.isEmpty() ? -1 : groups_->row(selected.front());
}

int ReviewPageView::currentLine() const {
  const QList<QTreeWidgetItem*> selected = lines_->selectedItems();
  const QTreeWidgetItem* item = selected.isEmpty() ? nullptr : selected.front();
  while (item != nullptr && item->parent() != nullptr) item = item->parent();
  return item == nullptr ? -1 : lines_->indexOfTopLevelItem(const_cast<QTreeWidgetItem*>(item));
}

void ReviewPageView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) fillGroups();
}

bool ReviewPageView::eventFilter(QObject* watched, QEvent* event) {
  const bool done = QWidget::eventFilter(watched, event);
  if (event->type() == QEvent::FocusIn && QAccessible::isActive()) {
    QMetaObject::invokeMethod(
        watched, [view = static_cast<QWidget*>(watched)] { tellCurrent(*view); },
        Qt::QueuedConnection);
  }
  return done;
}

void ReviewPageView::fillGroups() {
  const int before = currentGroup();
  const QString current =
      before < 0 ? QString() : groups_->item(before)->data(Qt::UserRole).toString();
  {
    const QSignalBlocker quiet(groups_);
    groups_->clear();
    for (const ReviewGroup& group : page_.groups) {
      const QString name = shown(group.name);
      const QString count = QString::number(group.lines.size());
      auto* item = new QListWidgetItem(
          QStringLiteral("%1 %2 (%3)").arg(shown(group.sign), name, count), groups_);
      item->setData(Qt::UserRole, name);
      item->setData(Qt::AccessibleTextRole,
                    QStringLiteral("%1 %2, %3").arg(shown(group.spoken), name, count).trimmed());
      if (group.tone != Tone::plain) {
        item->setBackground(tinted(palette(), colourOf(group.tone)));
      }
      if (name == current) groups_->setCurrentItem(item);
    }
    if (groups_->currentRow() < 0) groups_->setCurrentRow(0);
  }
  makeRoomForGroups();
  fillLines();
  if (moved) moved();
}

/// They get the width of their names, as long as half of the page is left for the lines.
void ReviewPageView::makeRoomForGroups() {
  const int edges = 2 * groups_->frameWidth() + style()->pixelMetric(QStyle::PM_ScrollBarExtent);
  const int wanted = std::min(groups_->sizeHintForColumn(0) + edges, width() / 2);
  if (groups_->width() < wanted) halves_->setSizes({wanted, width() - wanted});
}

void ReviewPageView::fillLines() {
  const QSignalBlocker quiet(lines_);
  lines_->clear();
  if (currentGroup() < 0) return showWhole();
  QList<QTreeWidgetItem*> items;
  for (const ReviewLine& line : page_.groups[static_cast<std::size_t>(currentGroup())].lines) {
    items << itemOf(line);
  }
  lines_->addTopLevelItems(items);
  // What a row that is new or gone holds is there for who wants to see it.
  for (QTreeWidgetItem* item : items) {
    item->setExpanded(item->text(0).startsWith(QLatin1Char(mark(Sign::changed))));
  }
  for (int column = 0; column + 1 < lines_->columnCount(); ++column) {
    lines_->resizeColumnToContents(column);
    const int most = widestColumn * lines_->fontMetrics().averageCharWidth();
    lines_->setColumnWidth(column, std::min(lines_->columnWidth(column), most));
  }
  if (!items.isEmpty()) lines_->setCurrentItem(items.front());
  showWhole();
}

void ReviewPageView::showWhole() {
  const QList<QTreeWidgetItem*> selected = lines_->selectedItems();
  const QString whole =
      selected.isEmpty() ? QString() : selected.front()->data(0, wholeRole).toString();
  whole_->setText(whole);
  whole_->setVisible(!whole.isEmpty());
}

QTreeWidgetItem* ReviewPageView::itemOf(const ReviewLine& line) const {
  auto* item = new QTreeWidgetItem;
  QStringList spoken;
  if (!line.spoken.empty()) spoken << shown(line.spoken);
  for (std::size_t column = 0; column < line.texts.size(); ++column) {
    const int at = static_cast<int>(column);
    const QString text = shown(line.texts[column]);
    const QString sign = at == 0 && !line.sign.empty() ? shown(line.sign) + u' ' : QString();
    item->setText(at, sign + text);
    item->setToolTip(at, toToolTip(text));
    if (!text.isEmpty()) spoken << text;
    if (line.tone != Tone::plain) {
      item->setBackground(at, tinted(palette(), colourOf(line.tone)));
    }
  }
  item->setData(0, Qt::AccessibleTextRole, spoken.join(QStringLiteral(", ")));
  item->setData(0, propertyRole, QByteArray::fromStdString(line.property));
  item->setData(0, wholeRole, shown(line.whole));
  for (const ReviewLine& below : line.below) item->addChild(itemOf(below));
  return item;
}

QString ReviewPageView::shown(const std::string& text) const {
  return toShown(text, codePage_);
}

}  // namespace kova
