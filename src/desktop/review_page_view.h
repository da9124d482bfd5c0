// SPDX-License-Identifier: MIT
// A page of the review window: a list on the left, and what belongs to its line on the right.
#pragma once

#include <QLabel>
#include <QListWidget>
#include <QSplitter>
#include <QTreeWidget>
#include <functional>
#include <string>

#include "review/review_pages.h"

namespace kova {

class ReviewPageView : public QWidget {
 public:
  /// `chosen` gets the property of the line that is double-clicked or entered.
  ReviewPageView(const CodePage& codePage, const std::function<void(const std::string&)>& chosen);

  /// Keeps the group that is current, if it is there still.
  void show(const ReviewPage& page);

  /// -1 if there is none.
  int currentGroup() const;
  /// Row of the line, or of the one that it lies below; -1 if there is none.
  int currentLine() const;
  /// Where a page puts its buttons.
  void addBelow(QWidget* widget);

  /// Runs when another group or line is current.
  std::function<void()> moved;

 protected:
  void changeEvent(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void fillGroups();
  void makeRoomForGroups();
  void fillLines();
  void showWhole();
  QTreeWidgetItem* itemOf(const ReviewLine& line) const;
  QString shown(const std::string& text) const;

  const CodePage& codePage_;
  ReviewPage page_;
  QLabel* heading_;
  QSplitter* halves_;
  QListWidget* groups_;
  QTreeWidget* lines_;
  QLabel* whole_;  ///< what the current line says, where its columns have no room for it
};

}  // namespace kova
