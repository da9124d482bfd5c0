// SPDX-License-Identifier: MIT
#include "desktop/field_marks.h"

#include <QApplication>
#include <utility>

#include "desktop/colours.h"
#include "desktop/text_conversion.h"
#include "editing/field_warnings.h"

namespace kova {

FieldMarks::FieldMarks(const std::vector<ShownField>& fields, const CodePage& codePage,
                       const Wizard& wizard, Handler marked)
    : fields_(fields),
      codePage_(codePage),
      wizard_(wizard),
      marked_(std::move(marked)),
      marks_(fields.size()),
      signs_(fields.size()) {
  afterEvent_.setSingleShot(true);
  connect(&afterEvent_, &QTimer::timeout, this, &FieldMarks::markAll);
}

void FieldMarks::scheduleUpdate() {
  if (!afterEvent_.isActive()) afterEvent_.start(0);
}

void FieldMarks::recolour() {
  for (std::size_t i = 0; i < fields_.size(); ++i) mark(i, marks_[i]);
}

void FieldMarks::markAll() {
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    const std::string warning = fieldWarning(wizard_, *fields_[i].field);
    if (warning != marks_[i]) mark(i, warning);
  }
  marked_();
}

void FieldMarks::mark(std::size_t index, const std::string& warning) {
  marks_[index] = warning;
  QWidget& widget = *fields_[index].widget;
  QPalette palette;
  QString tip = fields_[index].toolTip;
  if (!warning.empty()) {
    palette = markedField(QApplication::palette("QLineEdit"));
    if (!tip.isEmpty()) tip += u'\n';
    tip += toShown(warning, codePage_);
  }
  widget.setPalette(palette);
  if (tip != widget.accessibleDescription()) widget.setAccessibleDescription(tip);
  if (!warning.empty() && signs_[index] == nullptr) signs_[index] = new MarkSign(widget);
  if (signs_[index] != nullptr) signs_[index]->setVisible(!warning.empty());
}

}  // namespace kova
