// SPDX-License-Identifier: MIT
#include "desktop/message_boxes.h"

#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <algorithm>
#include <vector>

#include "desktop/event_filters.h"
#include "desktop/text_conversion.h"

namespace kova {
namespace {

// Laying out a table's longest text in a label would take the toolkit too long.
constexpr int longestLabel = 4000;  // characters

struct AnswerButton {
  Answer answer;
  QMessageBox::StandardButton button;
};

/// The Escape key and the window's close control give the last answer.
std::vector<AnswerButton> buttonsOf(const Message& message) {
  switch (message.buttons) {
    case Buttons::okCancel:
      return {{Answer::ok, QMessageBox::Ok}, {Answer::cancel, QMessageBox::Cancel}};
    case Buttons::yesNo:
      return {{Answer::yes, QMessageBox::Yes}, {Answer::no, QMessageBox::No}};
    case Buttons::ok:
      break;
  }
  return {{Answer::ok, QMessageBox::Ok}};
}

/// The text has a word over many lines, which the toolkit is slow to wrap at words.
bool hasEndlessWord(const QString& text) {
  constexpr int longestWord = 1000;
  int length = 0;
  return std::any_of(text.begin(), text.end(), [&length](QChar character) {
    length = character.isSpace() ? 0 : length + 1;
    return length > longestWord;
  });
}

/// A scrolling view of `text` that fits into `room`.
QPlainTextEdit* scrollingText(QWidget& parent, const QString& text, const QSize& room) {
  auto* area = new QPlainTextEdit(&parent);
  area->setReadOnly(true);
  area->setTabChangesFocus(true);
  area->setWordWrapMode(hasEndlessWord(text) ? QTextOption::WrapAnywhere
                                             : QTextOption::WrapAtWordBoundaryOrAnywhere);
  area->setPlainText(text);
  const int bar = area->style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, area);
  const int edges = 2 * (area->frameWidth() + static_cast<int>(area->document()->documentMargin()));
  const QRect lines =
      area->fontMetrics().boundingRect(QRect(0, 0, room.width() - edges - bar, room.height()),
                                       Qt::TextWrapAnywhere, text.left(longestLabel));
  area->setMinimumSize(room.width(), std::min(lines.height() + edges + bar, room.height()));
  return area;
}

/// Widens the box for its title, and lets a text that is too large for the screen scroll.
void fitToScreen(QMessageBox& box, const QString& fullText, const QSize& screen) {
  auto* text = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
  auto* layout = qobject_cast<QGridLayout*>(box.layout());
  const QSize room = screen * 3 / 4;  // the rest is for buttons and title
  if (text == nullptr || layout == nullptr) return;
  // Window managers show titles in bold, with buttons next to them.
  constexpr int buttonsOfTheFrame = 150;
  const int title = text->fontMetrics().horizontalAdvance(box.windowTitle()) * 6 / 5;
  layout->setColumnMinimumWidth(layout->columnCount() - 1,
                                std::min(title + buttonsOfTheFrame, room.width()));
  // The toolkit wraps lines that are too wide, but not within a word.
  const QSize wrapped =
      text->fontMetrics().boundingRect({{}, room}, Qt::TextWordWrap, text->text()).size();
  if (text->text() == fullText && wrapped.boundedTo(room) == wrapped) return;
  delete layout->replaceWidget(text, scrollingText(box, fullText, room));
  text->hide();
}

}  // namespace

MessageBox messageBoxes(QWidget& window, const CodePage& codePage, const std::string& programName) {
  return [&window, &codePage, programName](const Message& message) {
    QMessageBox box(&window);
    box.setWindowTitle(
        toShownMessage(message.title.empty() ? programName : message.title, codePage));
    box.setTextFormat(Qt::PlainText);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    const QString text = toShownMessage(message.text, codePage);
    box.setText(text.left(longestLabel));
    ControlInputFilter inputFilter;
    const auto buttons = buttonsOf(message);
    for (const AnswerButton& one : buttons) {
      box.addButton(one.button)->installEventFilter(&inputFilter);
      if (one.answer == message.enter) box.setDefaultButton(one.button);
    }
    box.setEscapeButton(buttons.back().button);
    fitToScreen(box, text, window.screen()->availableSize());
    const AnswerButton& first = buttons.front();
    return box.exec() == first.button ? first.answer : buttons.back().answer;
  };
}

}  // namespace kova
