// SPDX-License-Identifier: MIT
// The user documents in a window of their own, opened at the section of a field.
#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QTextBrowser>
#include <functional>

namespace kova {

/// Directory of the installed documents, next to the program or below its prefix; empty if there is
/// none.
QString documentsFolder();

class HelpWindow : public QWidget {
 public:
  /// Shows the Markdown files of `documents`. `facts` describes the running program, for a report.
  HelpWindow(QString documents, std::function<QString()> facts);

  /// Opens at the entry about `control` in the reference: its name, in the section of its frame. A
  /// control without an entry opens at the section, any other widget at the start page.
  void open(const QWidget* control);
  /// Opens the section of the reference with this heading.
  void openSection(const QString& heading);

  /// What is shown, with the entry that was looked up selected.
  const QTextBrowser& page() const { return *page_; }

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void present();
  void load(const QString& document);
  void showSection(const QUrl& address);
  void search();

  QString documents_;
  std::function<QString()> facts_;
  QTextBrowser* page_;
  QLineEdit* search_;
  QLabel* about_;
};

}  // namespace kova
