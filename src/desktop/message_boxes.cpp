// SPDX-License-Identifier: MIT
#include "desktop/message_boxes.h"

#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QScreen>
#include <QStyle>
#include <algorithm>
#include <array>
#include <utility>

#include "desktop/text_seam.h"

namespace kova {
namespace {

struct AnswerButton {
  Answer answer;
  QMessageBox::StandardButton button;
};

constexpr std::array<AnswerButton, 4> answerButtons{{
    {Answer::ok, QMessageBox::Ok},
    {Answer::cancel, QMessageBox::Cancel},
    {Answer::yes, QMessageBox::Yes},
    {Answer::no, QMessageBox::No},
}};

QMessageBox::StandardButton buttonOf(Answer answer) {
  for (const AnswerButton& row : answerButtons) {
    if (row.answer == answer) return row.button;
  }
  return QMessageBox::Ok;
}

Answer answerOf(int button, Answer otherwise) {
  for (const AnswerButton& row : answerButtons) {
    if (row.button == button) return row.answer;
  }
  return otherwise;
}

/// What the Escape key and the window's close control answer.
Answer escapeAnswer(Buttons buttons) {
  if (buttons == Buttons::okCancel) return Answer::cancel;
  return buttons == Buttons::yesNo ? Answer::no : Answer::ok;
}

QMessageBox::StandardButtons buttonsOf(Buttons buttons) {
  if (buttons == Buttons::okCancel) return QMessageBox::Ok | QMessageBox::Cancel;
  return buttons == Buttons::yesNo ? QMessageBox::Yes | QMessageBox::No
                                   : QMessageBox::StandardButtons(QMessageBox::Ok);
}

/// Shows `text` where it wraps at any place and scrolls. Its size fits into `room`.
QPlainTextEdit* scrollingText(QWidget& parent, const QString& text, const QSize& room) {
  auto* area = new QPlainTextEdit(&parent);
  area->setReadOnly(true);
  area->setTabChangesFocus(true);
  area->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  area->setPlainText(text);
  const int bar = area->style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, area);
  const int edges = 2 * (area->frameWidth() + static_cast<int>(area->document()->documentMargin()));
  const QRect lines = area->fontMetrics().boundingRect(
      QRect(0, 0, room.width() - edges - bar, room.height()), Qt::TextWrapAnywhere, text);
  area->setMinimumSize(room.width(), std::min(lines.height() + edges + bar, room.height()));
  return area;
}

/// The box has room for its title, and a text that the screen has no room for scrolls.
void fitToScreen(QMessageBox& box, const QSize& screen) {
  auto* text = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
  auto* layout = qobject_cast<QGridLayout*>(box.layout());
  const QSize room = screen * 3 / 4;  // the rest is for buttons and title
  if (text == nullptr || layout == nullptr) return;
  // Window managers set titles in bold and put buttons beside them.
  constexpr int buttonsOfTheFrame = 150;
  const int title = text->fontMetrics().horizontalAdvance(box.windowTitle()) * 6 / 5;
  layout->setColumnMinimumWidth(layout->columnCount() - 1,
                                std::min(title + buttonsOfTheFrame, room.width()));
  // The toolkit wraps what is only too wide, but not within a word.
  const QSize wrapped = text->fontMetrics()
                            .boundingRect(QRect(QPoint(), room), Qt::TextWordWrap, text->text())
                            .size();
  if (wrapped.boundedTo(room) == wrapped) return;
  delete layout->replaceWidget(text, scrollingText(box, text->text(), room));
  text->hide();
}

class Boxes {
 public:
  Boxes(QWidget& window, const CodePage& codePage, std::string programName)
      : window_(window), codePage_(codePage), programName_(std::move(programName)) {}

  Answer operator()(const Message& message) const {
    QMessageBox box(&window_);
    box.setWindowTitle(
        toShownMessage(message.title.empty() ? programName_ : message.title, codePage_));
    box.setTextFormat(Qt::PlainText);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    box.setText(toShownMessage(message.text, codePage_));
    box.setStandardButtons(buttonsOf(message.buttons));
    const Answer escape = escapeAnswer(message.buttons);
    box.setDefaultButton(buttonOf(message.enter));
    box.setEscapeButton(buttonOf(escape));
    fitToScreen(box, window_.screen()->availableSize());
    return answerOf(box.exec(), escape);
  }

 private:
  QWidget& window_;
  const CodePage& codePage_;
  std::string programName_;
};

}  // namespace

MessageBox messageBoxes(QWidget& window, const CodePage& codePage, const std::string& programName) {
  return Boxes(window, codePage, programName);
}

}  // namespace kova
