// SPDX-License-Identifier: MIT
#include "desktop/line_list.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "desktop/text_conversion.h"

namespace kova {

LineModel::LineModel(const ListBox& list, const CodePage& codePage, QListView* view)
    : QAbstractListModel(view), list_(list), codePage_(codePage), view_(*view) {}

bool LineModel::refresh() {
  const int rows = static_cast<int>(list_.lines().size());
  if (rows == rows_) return false;
  if (rows > rows_) {
    beginInsertRows({}, rows_, rows - 1);
    rows_ = rows;
    endInsertRows();
  } else {
    beginRemoveRows({}, rows, rows_ - 1);
    rows_ = rows;
    endRemoveRows();
  }
  return true;
}

QVariant LineModel::data(const QModelIndex& index, int role) const {
  const auto row = static_cast<std::size_t>(index.row());
  if (!index.isValid() || row >= list_.lines().size()) return {};
  if (role == Qt::DisplayRole) return toShown(list_.lines()[row], codePage_);
  if (role == Qt::ToolTipRole) return toToolTip(toShown(list_.lines()[row], codePage_));
  if (role == Qt::SizeHintRole) return sizeOfWidest();
  return {};
}

QString LineModel::name(int row) const {
  const QString line = data(index(row), Qt::DisplayRole).toString();
  constexpr QStringView afterExportName = u"] ";
  return line.mid(line.indexOf(afterExportName) + afterExportName.size());
}

/// The view asks for one size per layout and uses it for all lines. Adding up characters is much
/// faster than letting the toolkit lay out a thousand lines.
QSize LineModel::sizeOfWidest() const {
  const QFontMetricsF metrics(view_.font(), &view_);
  std::array<qreal, 256> widths{};  // of the characters met so far
  const auto width = [&](char byte) {
    qreal& known = widths.at(static_cast<unsigned char>(byte));
    if (known == 0) known = metrics.horizontalAdvance(toShown({&byte, 1}, codePage_));
    return known;
  };
  qreal widest = 0;
  for (const std::string& line : list_.lines()) {
    qreal sum = 0;
    for (const char byte : line) sum += width(byte);
    widest = std::max(widest, sum);
  }
  constexpr int margin = 4;
  return {static_cast<int>(std::ceil(widest)) + 2 * margin,
          static_cast<int>(std::ceil(metrics.height())) + margin};
}

LineList::LineList(ListBox& list, const CodePage& codePage, QString emptyText, QWidget* parent)
    : QListView(parent),
      list_(list),
      lines_(list, codePage, this),
      emptyText_(std::move(emptyText)) {
  setModel(&lines_);
  setUniformItemSizes(true);
  setTextElideMode(Qt::ElideNone);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setSelectionMode(QAbstractItemView::SingleSelection);
  setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  setFocusPolicy(Qt::StrongFocus);
  setTabKeyNavigation(false);
  connect(selectionModel(), &QItemSelectionModel::selectionChanged, this,
          [this](const QItemSelection& selected) {
            // A screen reader clears the selection before it makes a new one.
            if (!refreshing_ && !inKeyPress_ && !selected.isEmpty()) takeSelection();
          });
}

void LineList::refresh() {
  const QScopedValueRollback<bool> guard(refreshing_, true);
  const bool rowsChanged = lines_.refresh();
  const int row = list_.selectedIndex();
  if (row != ListBox::none) place_ = row;
  const bool selects = std::exchange(shownRow_, row) != row;
  if (row != shownRow()) {
    if (row == ListBox::none) {
      selectionModel()->clear();
    } else {
      setCurrentIndex(lines_.index(row));
    }
  }
  // Otherwise the toolkit repaints by itself. What remains is a changed text of a line.
  if (!selects && !rowsChanged) scheduleDelayedItemsLayout();
}

void LineList::refreshAll() {
  refresh();
  scheduleDelayedItemsLayout();
  viewport()->update();
}

int LineList::shownRow() const {
  const auto selected = selectionModel()->selectedIndexes();
  return selected.isEmpty() ? ListBox::none : selected.first().row();
}

/// Passes the toolkit's own selection to the model.
void LineList::takeSelection() {
  const int row = shownRow();
  if (row != ListBox::none && row != list_.selectedIndex()) {
    list_.select(row);
  } else {
    refresh();
  }
}

void LineList::mousePressEvent(QMouseEvent* event) {
  const QModelIndex line = indexAt(event->position().toPoint());
  if (event->button() == Qt::LeftButton && line.isValid()) list_.select(line.row());
}

void LineList::mouseDoubleClickEvent(QMouseEvent* event) {
  const QModelIndex line = indexAt(event->position().toPoint());
  if (event->button() != Qt::LeftButton || !line.isValid()) return;
  // The first click may have opened another project.
  if (line.row() == list_.selectedIndex()) {
    list_.doubleClick();
  } else {
    list_.select(line.row());
  }
}

void LineList::currentChanged(const QModelIndex& now, const QModelIndex& before) {
  if (hasFocus()) {
    QListView::currentChanged(now, before);
  } else {
    // The direct base would report to screen readers that the line has the focus.
    QAbstractItemView::currentChanged(now, before);  // NOLINT(bugprone-parent-virtual-call)
  }
}

void LineList::keyPressEvent(QKeyEvent* event) {
  const bool moves = event->key() == Qt::Key_Down || event->key() == Qt::Key_Up;
  if (moves && list_.selectedIndex() == ListBox::none && !list_.lines().empty()) {
    list_.select(std::min(place_, static_cast<int>(list_.lines().size()) - 1));
    return;
  }
  {
    const QScopedValueRollback<bool> guard(inKeyPress_, true);
    QListView::keyPressEvent(event);
  }
  if (shownRow() != list_.selectedIndex()) takeSelection();
}

void LineList::keyboardSearch(const QString& typed) {
  constexpr qint64 memory = 1000;  // milliseconds
  if (!sinceTyped_.isValid() || sinceTyped_.elapsed() > memory) sought_.clear();
  sinceTyped_.start();
  sought_ += typed;
  const int rows = lines_.rowCount({});
  // A first character moves on to the next match; further ones may match the same line.
  const int start = list_.selectedIndex() + (sought_.size() == typed.size() ? 1 : 0);
  for (int i = 0; i < rows; ++i) {
    const int row = (std::max(start, 0) + i) % rows;
    if (!lines_.name(row).startsWith(sought_, Qt::CaseInsensitive)) continue;
    if (row != list_.selectedIndex()) list_.select(row);
    return;
  }
}

void LineList::paintEvent(QPaintEvent* event) {
  QListView::paintEvent(event);
  if (!list_.lines().empty()) return;
  QPainter painter(viewport());
  painter.setPen(palette().color(QPalette::PlaceholderText));
  const int margin = fontMetrics().height() / 2;
  painter.drawText(viewport()->rect().adjusted(margin, margin, -margin, -margin),
                   Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, emptyText_);
}

QSize LineList::sizeOf(int columns, int lines) const {
  return {columns * fontMetrics().averageCharWidth() + 2 * frameWidth(),
          lines * (fontMetrics().height() + 4) + 2 * frameWidth()};
}

}  // namespace kova
