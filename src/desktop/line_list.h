// SPDX-License-Identifier: MIT
// A list of lines on screen.
#pragma once

#include <QAbstractListModel>
#include <QElapsedTimer>
#include <QListView>

#include "controls/controls.h"
#include "platform/code_page.h"

namespace kova {

/// Provides the lines to the toolkit's view, read from the model on demand.
class LineModel : public QAbstractListModel {
 public:
  LineModel(const ListBox& list, const CodePage& codePage, QListView* view);

  /// Updates the number of rows. False if it is unchanged.
  bool refresh();

  int rowCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : rows_; }
  QVariant data(const QModelIndex& index, int role) const override;
  /// A line from its property name on, without the export name.
  QString name(int row) const;

 private:
  QSize sizeOfWidest() const;

  const ListBox& list_;
  const CodePage& codePage_;
  QListView& view_;
  int rows_ = 0;
};

/// Each user action, by mouse, keyboard or assistive program, makes one selection.
class LineList : public QListView {
 public:
  /// The list shows `emptyText` while it has no lines.
  LineList(ListBox& list, const CodePage& codePage, QString emptyText, QWidget* parent);

  void refresh();
  /// The same where any line may have changed.
  void refreshAll();
  /// Searches by property name, ignoring case.
  void keyboardSearch(const QString& typed) override;

  QSize sizeHint() const override { return sizeOf(40, 8); }
  QSize minimumSizeHint() const override { return sizeOf(16, 4); }

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* /*event*/) override {}
  void mouseReleaseEvent(QMouseEvent* /*event*/) override {}
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void currentChanged(const QModelIndex& now, const QModelIndex& before) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  int shownRow() const;
  void takeSelection();
  /// Size for this number of characters and lines.
  QSize sizeOf(int columns, int lines) const;

  ListBox& list_;
  LineModel lines_;
  QString emptyText_;
  bool refreshing_ = false;
  bool inKeyPress_ = false;
  int shownRow_ = ListBox::none;  ///< selected at the last refresh
  int place_ = 0;                 ///< of the last selected line
  QString sought_;                ///< typed so far
  QElapsedTimer sinceTyped_;
};

}  // namespace kova
