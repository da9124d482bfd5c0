// SPDX-License-Identifier: MIT
// A page of the review window: a list on the left, and what belongs to its line on the right.
#pragma once

#include <QLabel>
#include <QListWidget>
#include <QSplitter>
#include <QTreeWidget>
#include <functional>
#include <string>
#include <vector>

#include "review/review_pages.h"

namespace kova {

class ReviewPageView : public QWidget {
 public:
  /// `chosen` gets the property of the line that is double-clicked or entered.
  ReviewPageView(const CodePage& codePage, const std::function<void(const std::string&)>& chosen);

  /// What is chosen and expanded stays so, wherever it is now, and the page stays scrolled as it
  /// is. If the chosen group or line is gone, none is chosen.
  void show(const ReviewPage& page);

  /// Key of the chosen group; empty if there is none.
  std::string chosenGroup() const;
  /// Key of the chosen line, or of the one that it lies below; empty if there is none.
  std::string chosenLine() const;
  /// Where a page puts its buttons.
  void addBelow(QWidget* widget);

  /// Runs when another group or line is current.
  std::function<void()> moved;

 protected:
  void changeEvent(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  const ReviewGroup* chosenOf(const ReviewPage& page) const;
  void refillGroups(const std::string& chosen);
  void showGroups();
  void makeRoomForGroups();
  void fillLines();
  void refillLines();
  void putLines();
  void showWhole();
  QList<QTreeWidgetItem*> itemsOf(const std::vector<ReviewLine>& lines,
                                  const QByteArray& above) const;
  QTreeWidgetItem* itemOf(const ReviewLine& line, const QByteArray& path) const;
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
