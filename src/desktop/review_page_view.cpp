// SPDX-License-Identifier: MIT
#include "desktop/review_page_view.h"

#include <QAccessible>
#include <QEvent>
#include <QHash>
#include <QScrollBar>
#include <QStyle>
#include <QTreeWidgetItemIterator>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "desktop/colours.h"
#include "desktop/text_conversion.h"

namespace kova {
namespace {

constexpr int propertyRole = Qt::UserRole;
constexpr int fullTextRole = Qt::UserRole + 1;
constexpr int keyRole = Qt::UserRole + 2;
constexpr int pathRole = Qt::UserRole + 3;  // keys of the line and its parents
constexpr int widestColumn = 48;            // characters

QColor colourOf(Style style) {
  switch (style) {
    case Style::added:
      return {0, 160, 0};
    case Style::removed:
      return {220, 0, 0};
    case Style::changed:
      return {255, 160, 0};
    case Style::plain:
      break;
  }
  return {};
}

/// Reports a view's current line to screen readers, as the toolkit reports only the view.
void announceCurrent(QWidget& view) {
  const QAccessibleInterface* shown = QAccessible::queryAccessibleInterface(&view);
  QAccessibleInterface* current = shown == nullptr ? nullptr : shown->focusChild();
  if (current == nullptr) return;
  QAccessibleEvent focus(current, QAccessible::Focus);
  QAccessible::updateAccessibility(&focus);
}

QByteArray pathOf(const QTreeWidgetItem& item) {
  return item.data(0, pathRole).toByteArray();
}

/// Saves and restores a view's scroll position.
class ScrolledPlace {
 public:
  explicit ScrolledPlace(QAbstractItemView& view)
      : view_(view),
        place_(view.horizontalScrollBar()->value(), view.verticalScrollBar()->value()) {}
  void restore() const {
    view_.doItemsLayout();  // updates the range of the scroll bars
    view_.horizontalScrollBar()->setValue(place_.x());
    view_.verticalScrollBar()->setValue(place_.y());
  }

 private:
  QAbstractItemView& view_;
  QPoint place_;
};

}  // namespace

ReviewPageView::ReviewPageView(const CodePage& codePage,
                               const std::function<void(const std::string&)>& chosen)
    : codePage_(codePage),
      heading_(new QLabel(this)),
      halves_(new QSplitter(this)),
      groups_(new QListWidget),
      lines_(new QTreeWidget),
      fullText_(new QLabel(this)) {
  halves_->addWidget(groups_);
  halves_->addWidget(lines_);
  halves_->setStretchFactor(1, 1);
  halves_->setChildrenCollapsible(false);
  for (QLabel* label : {heading_, fullText_}) {
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
  layout->addWidget(fullText_);
  // Screen readers select a line without making it current.
  connect(groups_, &QListWidget::itemSelectionChanged, this, [this] {
    fillLines();
    if (moved) moved();
  });
  connect(lines_, &QTreeWidget::itemSelectionChanged, this, [this] {
    showFullText();
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
  const bool same = page == page_;
  const ReviewPage former = std::exchange(page_, page);
  if (same) return showGroups();
  heading_->setText(shown(page_.heading));
  if (page_.columns != former.columns) {
    QStringList columns;
    for (const std::string& column : page_.columns) columns << shown(column);
    lines_->setHeaderLabels(columns);
  }
  const ReviewGroup* before = chosenOf(former);
  const bool wasEmpty = former.groups.empty() && !page_.groups.empty();
  refillGroups(wasEmpty ? page_.groups.front().key : chosenGroup());
  const ReviewGroup* now = chosenOf(page_);
  if (before == nullptr || now == nullptr) {
    fillLines();
  } else if (before->lines != now->lines) {
    refillLines();
  }
  if (moved) moved();
}

std::string ReviewPageView::chosenGroup() const {
  const QList<QListWidgetItem*> selected = groups_->selectedItems();
  if (selected.isEmpty()) return {};
  return selected.front()->data(keyRole).toByteArray().toStdString();
}

std::string ReviewPageView::chosenLine() const {
  const ReviewLine* line = chosenTopLine();
  return line == nullptr ? std::string() : line->key;
}

const ReviewLine* ReviewPageView::chosenTopLine() const {
  const ReviewGroup* group = chosenOf(page_);
  const QList<QTreeWidgetItem*> selected = lines_->selectedItems();
  if (group == nullptr || selected.isEmpty()) return nullptr;
  QTreeWidgetItem* item = selected.front();
  while (item->parent() != nullptr) item = item->parent();
  return &group->lines.at(static_cast<std::size_t>(lines_->indexOfTopLevelItem(item)));
}

/// `page` is the one on screen.
const ReviewGroup* ReviewPageView::chosenOf(const ReviewPage& page) const {
  const QList<QListWidgetItem*> selected = groups_->selectedItems();
  if (selected.isEmpty()) return nullptr;
  return &page.groups.at(static_cast<std::size_t>(groups_->row(selected.front())));
}

void ReviewPageView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) {
    showGroups();
    refillLines();
  }
}

bool ReviewPageView::eventFilter(QObject* watched, QEvent* event) {
  const bool done = QWidget::eventFilter(watched, event);
  if (event->type() == QEvent::FocusIn && QAccessible::isActive()) {
    QMetaObject::invokeMethod(
        watched, [view = static_cast<QWidget*>(watched)] { announceCurrent(*view); },
        Qt::QueuedConnection);
  }
  return done;
}

void ReviewPageView::refillGroups(const std::string& chosen) {
  const QSignalBlocker quiet(groups_);
  const ScrolledPlace place(*groups_);
  groups_->clear();
  for (const ReviewGroup& group : page_.groups) {
    auto* item = new QListWidgetItem(groups_);
    item->setData(keyRole, QByteArray::fromStdString(group.key));
    if (group.key == chosen) groups_->setCurrentItem(item);
  }
  showGroups();
  place.restore();
}

/// Updates the texts and colours of the groups.
void ReviewPageView::showGroups() {
  for (int row = 0; row < groups_->count(); ++row) {
    const ReviewGroup& group = page_.groups[static_cast<std::size_t>(row)];
    const QString age = group.age.empty() ? QString() : QStringLiteral(", ") + shown(group.age);
    const QString name = shown(group.name) + age;
    const QString count = QString::number(group.lines.size());
    QListWidgetItem* item = groups_->item(row);
    item->setText(QStringLiteral("%1 %2 (%3)").arg(shown(group.sign), name, count));
    item->setData(Qt::AccessibleTextRole,
                  QStringLiteral("%1 %2, %3").arg(shown(group.accessible), name, count).trimmed());
    if (group.style != Style::plain) item->setBackground(tinted(palette(), colourOf(group.style)));
  }
  makeRoomForGroups();
}

/// Widens the groups to their names, up to half of the page.
void ReviewPageView::makeRoomForGroups() {
  const int edges = 2 * groups_->frameWidth() + style()->pixelMetric(QStyle::PM_ScrollBarExtent);
  const int wanted = std::min(groups_->sizeHintForColumn(0) + edges, width() / 2);
  if (groups_->width() < wanted) halves_->setSizes({wanted, width() - wanted});
}

void ReviewPageView::fillLines() {
  const QSignalBlocker quiet(lines_);
  putLines();
  if (lines_->topLevelItemCount() > 0) lines_->setCurrentItem(lines_->topLevelItem(0));
  showFullText();
}

void ReviewPageView::refillLines() {
  const QSignalBlocker quiet(lines_);
  const ScrolledPlace place(*lines_);
  const QList<QTreeWidgetItem*> selected = lines_->selectedItems();
  const QByteArray chosen = selected.isEmpty() ? QByteArray() : pathOf(*selected.front());
  QHash<QByteArray, bool> expanded;
  for (QTreeWidgetItemIterator each(lines_); *each != nullptr; ++each) {
    expanded.insert(pathOf(**each), (*each)->isExpanded());
  }
  putLines();
  for (QTreeWidgetItemIterator each(lines_); *each != nullptr; ++each) {
    const QByteArray path = pathOf(**each);
    if (path == chosen) lines_->setCurrentItem(*each);
    (*each)->setExpanded(expanded.value(path, (*each)->isExpanded()));
  }
  place.restore();
  showFullText();
}

/// Fills in the lines of the chosen group, without choosing one.
void ReviewPageView::putLines() {
  lines_->clear();
  const ReviewGroup* group = chosenOf(page_);
  if (group == nullptr) return;
  const QList<QTreeWidgetItem*> items = itemsOf(group->lines, {});
  lines_->addTopLevelItems(items);
  // Only the fields of changed rows are shown at once.
  for (QTreeWidgetItem* item : items) {
    item->setExpanded(item->text(0).startsWith(QLatin1Char(mark(Sign::changed))));
  }
  for (int column = 0; column + 1 < lines_->columnCount(); ++column) {
    lines_->resizeColumnToContents(column);
    const int most = widestColumn * lines_->fontMetrics().averageCharWidth();
    lines_->setColumnWidth(column, std::min(lines_->columnWidth(column), most));
  }
}

void ReviewPageView::showFullText() {
  const QList<QTreeWidgetItem*> selected = lines_->selectedItems();
  const QString text =
      selected.isEmpty() ? QString() : selected.front()->data(0, fullTextRole).toString();
  fullText_->setText(text);
  fullText_->setVisible(!text.isEmpty());
}

QList<QTreeWidgetItem*> ReviewPageView::itemsOf(const std::vector<ReviewLine>& lines,
                                                const QByteArray& above) const {
  QList<QTreeWidgetItem*> items;
  QHash<std::string, int> ofThatKey;  // a table may have a row twice
  for (const ReviewLine& line : lines) {
    const QByteArray number = QByteArray::number(ofThatKey[line.key]++);
    items << itemOf(line, above + '\n' + number + ' ' + QByteArray::fromStdString(line.key));
  }
  return items;
}

QTreeWidgetItem* ReviewPageView::itemOf(const ReviewLine& line, const QByteArray& path) const {
  auto* item = new QTreeWidgetItem;
  QStringList accessible;
  if (!line.accessible.empty()) accessible << shown(line.accessible);
  for (std::size_t column = 0; column < line.texts.size(); ++column) {
    const int at = static_cast<int>(column);
    const QString text = shown(line.texts[column]);
    const QString sign = at == 0 && !line.sign.empty() ? shown(line.sign) + u' ' : QString();
    item->setText(at, sign + text);
    item->setToolTip(at, toToolTip(text));
    if (!text.isEmpty()) accessible << text;
    if (line.style != Style::plain) {
      item->setBackground(at, tinted(palette(), colourOf(line.style)));
    }
  }
  item->setData(0, Qt::AccessibleTextRole, accessible.join(QStringLiteral(", ")));
  item->setData(0, propertyRole, QByteArray::fromStdString(line.property));
  item->setData(0, fullTextRole, shown(line.fullText));
  item->setData(0, keyRole, QByteArray::fromStdString(line.key));
  item->setData(0, pathRole, path);
  item->addChildren(itemsOf(line.below, path));
  return item;
}

QString ReviewPageView::shown(const std::string& text) const {
  return toShown(text, codePage_);
}

}  // namespace kova
