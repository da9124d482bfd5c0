// SPDX-License-Identifier: MIT
// A list of lines on screen.
#pragma once

#include <QAbstractListModel>
#include <QElapsedTimer>
#include <QListView>

#include "controls/controls.h"
#include "platform/code_page.h"

namespace kova {

/// The lines as the toolkit's views ask for them, read from the model at that moment.
class LineModel : public QAbstractListModel {
 public:
  LineModel(const ListBox& list, const CodePage& codePage, QListView* view);

  /// Brings the number of rows up to that of the lines. False if it is the same.
  bool refresh();

  int rowCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : rows_; }
  QVariant data(const QModelIndex& index, int role) const override;
  /// A line from its property name on.
  QString name(int row) const;

 private:
  QSize sizeOfWidest() const;

  const ListBox& list_;
  const CodePage& codePage_;
  QListView& view_;
  int rows_ = 0;
};

/// One act of the engineer, by mouse, keyboard or assistive program, is one selection.
class LineList : public QListView {
 public:
  /// `emptyText` stands in the list while it has no lines.
  LineList(ListBox& list, const CodePage& codePage, QString emptyText, QWidget* parent);

  void refresh();
  /// By the property name, whatever its case.
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
  /// With room for so many characters and lines.
  QSize sizeOf(int columns, int lines) const;

  ListBox& list_;
  LineModel lines_;
  QString emptyText_;
  bool refreshing_ = false;
  bool inKeyPress_ = false;
  int shownRow_ = ListBox::none;  ///< that was selected at the last mirroring
  int place_ = 0;                 ///< of the line that was selected last
  QString sought_;                ///< as far as it has been typed
  QElapsedTimer sinceTyped_;
};

}  // namespace kova
