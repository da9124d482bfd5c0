// SPDX-License-Identifier: MIT
#include "desktop/help_window.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QDir>
#include <QGroupBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QTextBlock>
#include <utility>

namespace kova {
namespace {

constexpr QSize helpCharactersAndLines(130, 40);
constexpr auto startPage = "quick-start.md";
constexpr auto reference = "reference.md";

/// The part of an address that leads to a heading: lower case, without punctuation, dashes for
/// spaces.
QString fragmentOf(const QString& heading) {
  QString fragment;
  for (const QChar character : heading.toLower()) {
    if (character.isLetterOrNumber() || character == '_' || character == '-') fragment += character;
    if (character == ' ') fragment += '-';
  }
  return fragment;
}

QTextBlock findSection(const QTextDocument& document, const QString& fragment) {
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
    if (block.blockFormat().headingLevel() > 0 && fragmentOf(block.text()) == fragment)
      return block;
  }
  return {};
}

/// An entry begins with the name, as a cell of a table or a line.
QTextBlock findEntry(const QTextBlock& section, const QString& name) {
  const int level = section.blockFormat().headingLevel();
  for (QTextBlock block = section.next(); block.isValid(); block = block.next()) {
    const int heading = block.blockFormat().headingLevel();
    if (heading > 0 && heading <= level) break;
    if (block.text() == name) return block;
  }
  return {};
}

QString nameOf(const QWidget& control) {
  const auto* button = qobject_cast<const QAbstractButton*>(&control);
  QString name = button == nullptr ? control.accessibleName() : button->text().remove('&');
  if (name.endsWith(QStringLiteral(" :"))) name.chop(2);
  return name;
}

}  // namespace

QString documentsFolder() {
  const QString program = QCoreApplication::applicationDirPath();
  for (const char* place : {"/docs", "/../share/doc/kova-setup-wizard/docs"}) {
    const QDir folder(program + QLatin1String(place));
    if (folder.exists(reference)) return folder.canonicalPath();
  }
  return {};
}

HelpWindow::HelpWindow(QString documents, std::function<QString()> facts)
    : documents_(std::move(documents)),
      facts_(std::move(facts)),
      page_(new QTextBrowser),
      search_(new QLineEdit),
      about_(new QLabel) {
  setObjectName(QStringLiteral("help"));
  setWindowTitle(QStringLiteral("Help"));
  // This window must not keep the program running.
  setAttribute(Qt::WA_QuitOnClose, false);
  page_->setOpenExternalLinks(true);
  page_->setAccessibleName(QStringLiteral("Document"));
  search_->setPlaceholderText(QStringLiteral("Search this page (Ctrl+F)"));
  search_->setAccessibleName(QStringLiteral("Search this page"));
  about_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  about_->setWordWrap(true);
  auto* back = new QPushButton(QStringLiteral("&Back"));
  auto* home = new QPushButton(QStringLiteral("&Contents"));
  auto* copy = new QPushButton(QStringLiteral("Copy &details"));
  copy->setToolTip(QStringLiteral("Copy version and directories, for a report"));
  back->setEnabled(false);

  auto* all = new QVBoxLayout(this);
  auto* top = new QHBoxLayout;
  top->addWidget(back);
  top->addWidget(home);
  top->addWidget(search_, 1);
  auto* foot = new QHBoxLayout;
  foot->addWidget(about_, 1);
  foot->addWidget(copy, 0, Qt::AlignBottom);
  all->addLayout(top);
  all->addWidget(page_, 1);
  all->addLayout(foot);

  connect(back, &QPushButton::clicked, page_, &QTextBrowser::backward);
  connect(home, &QPushButton::clicked, this, [this] { load(startPage); });
  connect(copy, &QPushButton::clicked, this,
          [this] { QGuiApplication::clipboard()->setText(facts_()); });
  connect(search_, &QLineEdit::returnPressed, this, &HelpWindow::search);
  connect(page_, &QTextBrowser::backwardAvailable, back, &QPushButton::setEnabled);
  connect(page_, &QTextBrowser::sourceChanged, this, &HelpWindow::showSection);
  const QFontMetrics font = fontMetrics();
  resize(helpCharactersAndLines.width() * font.averageCharWidth(),
         helpCharactersAndLines.height() * font.lineSpacing());
}

void HelpWindow::open(const QWidget* control) {
  present();
  load(control == nullptr ? startPage : reference);
  QTextBlock entry;
  for (const QWidget* frame = control; frame != nullptr; frame = frame->parentWidget()) {
    const auto* box = qobject_cast<const QGroupBox*>(frame);
    if (box == nullptr && !frame->isWindow()) continue;
    QString heading = box == nullptr ? QStringLiteral("List and buttons") : box->title();
    const QTextBlock section = findSection(*page_->document(), fragmentOf(heading.remove('&')));
    if (!section.isValid()) continue;
    entry = findEntry(section, nameOf(*control));
    if (entry.isValid()) break;
    entry = section;
  }
  if (entry.isValid()) {
    // At the end first, so that the entry then appears at the top.
    page_->moveCursor(QTextCursor::End);
    QTextCursor cursor(entry);
    cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    page_->setTextCursor(cursor);
  }
}

void HelpWindow::openSection(const QString& heading) {
  present();
  load(reference + ('#' + fragmentOf(heading)));
}

void HelpWindow::present() {
  about_->setText(facts_().replace('\n', QStringLiteral(". ")));
  setWindowState(windowState() & ~Qt::WindowMinimized);
  show();
  raise();
  activateWindow();
  page_->setFocus(Qt::OtherFocusReason);
}

void HelpWindow::load(const QString& document) {
  if (documents_.isEmpty()) {
    page_->setPlainText(QStringLiteral(
        "The documents are not installed. They belong in the directory share/doc/kova-setup-wizard "
        "of the program's prefix, or in the directory docs next to the program."));
    return;
  }
  page_->setSource(QUrl::fromLocalFile(documents_ + '/').resolved(QUrl(document)));
}

/// The toolkit reads Markdown, but does not make its headings targets of links.
void HelpWindow::showSection(const QUrl& address) {
  const QTextBlock section = findSection(*page_->document(), address.fragment());
  if (!section.isValid()) return;
  page_->moveCursor(QTextCursor::End);
  page_->setTextCursor(QTextCursor(section));
}

/// From the cursor on, then from the start.
void HelpWindow::search() {
  if (page_->find(search_->text())) return;
  page_->moveCursor(QTextCursor::Start);
  page_->find(search_->text());
}

void HelpWindow::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Find)) {
    search_->setFocus(Qt::ShortcutFocusReason);
    search_->selectAll();
  } else if (event->key() == Qt::Key_Escape) {
    close();
  } else {
    QWidget::keyPressEvent(event);
  }
}

}  // namespace kova
