// SPDX-License-Identifier: MIT
// A page of the review window: groups on the left, and the lines of one group on the right.
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
  /// `chosen` gets the property of a line on a double click or Enter.
  ReviewPageView(const CodePage& codePage, const std::function<void(const std::string&)>& chosen);

  /// Keeps the selection, expanded lines and scroll position. If the chosen group or line no longer
  /// exists, none is chosen.
  void show(const ReviewPage& page);

  /// Key of the chosen group; empty if there is none.
  std::string chosenGroup() const;
  /// Key of the chosen line, or of its top-level line; empty if there is none.
  std::string chosenLine() const;
  /// The line itself, or null. Valid until the next `show`.
  const ReviewLine* chosenTopLine() const;
  /// Adds a widget, such as buttons, below the lists.
  void addBelow(QWidget* widget);

  /// Runs when another group or line is chosen.
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
  void showFullText();
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
  QLabel* fullText_;  ///< messages of the chosen line, which may not fit its columns
};

}  // namespace kova
