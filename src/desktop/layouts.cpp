// SPDX-License-Identifier: MIT
#include "desktop/layouts.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <algorithm>
#include <memory>

#include "desktop/make_child.h"
#include "desktop/small_widgets.h"

namespace kova {
namespace {

// A part that begins this far in, and ends where the parts around it do, stands at the right.
constexpr int indent = 600;
constexpr int sameEdge = 150;

bool fillsItsCell(const Drawn& control) {
  const ControlKind kind = control.design->kind;
  return !isNumberField(control) && kind != ControlKind::checkBox &&
         kind != ControlKind::optionButton;
}

bool anyGrows(const Part& part, bool Drawn::*grows) {
  const auto& cells = part.grid.cells;
  return std::any_of(cells.begin(), cells.end(),
                     [&](const Cell& cell) { return cell.control->*grows; }) ||
         std::any_of(part.parts.begin(), part.parts.end(),
                     [&](const Part& inner) { return anyGrows(inner, grows); });
}

class Layouts {
 public:
  Layouts(const Drawing& drawing, const WidgetOf& widgetOf)
      : drawing_(drawing), widgetOf_(widgetOf) {}

  void run(QWidget& window) const {
    window.setLayout(layoutOf(partsOf(drawing_.inside(""))).release());
    for (const Drawn& frame : drawing_.controls()) {
      if (isFrame(frame)) {
        widgetOf_(frame)->setLayout(
            gridLayout(gridOf(drawing_.inside(frame.design->name))).release());
      }
    }
  }

 private:
  std::unique_ptr<QLayout> layoutOf(const Part& part) const {
    if (part.kind == Part::Kind::grid) return gridLayout(part.grid);
    return boxLayout(part);
  }

  std::unique_ptr<QBoxLayout> boxLayout(const Part& part) const {
    const bool stacked = part.kind == Part::Kind::stacked;
    auto box =
        std::make_unique<QBoxLayout>(stacked ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    const auto grows = stacked ? &Drawn::growsTall : &Drawn::growsWide;
    for (const Part& inner : part.parts) {
      QLayout* layout = layoutOf(inner).release();
      box->addLayout(layout, anyGrows(inner, grows) ? 1 : 0);
      if (stacked && inner.edges.left > part.edges.left + indent &&
          inner.edges.right > part.edges.right - sameEdge) {
        box->setAlignment(layout, Qt::AlignRight);
      }
    }
    if (stacked && !anyGrows(part, &Drawn::growsTall)) box->setStretch(box->count() - 1, 1);
    return box;
  }

  std::unique_ptr<QGridLayout> gridLayout(const Grid& grid) const {
    auto layout = std::make_unique<QGridLayout>();
    stretch(*layout, grid);
    for (const Cell& cell : grid.cells) {
      add(*layout, cell, *widgetOf_(*cell.control), alignment(*layout, grid, cell));
    }
    for (const LabelsBeside& beside : grid.beside) {
      add(*layout, beside.place, *labelsBeside(beside), {});
    }
    return layout;
  }

  static void add(QGridLayout& layout, const Cell& cell, QWidget& widget, Qt::Alignment alignment) {
    layout.addWidget(&widget, cell.row, cell.column, cell.rows, cell.columns, alignment);
  }

  /// Room that nothing in the grid takes goes behind the last row and the last column.
  static void stretch(QGridLayout& layout, const Grid& grid) {
    bool wide = false;
    bool tall = false;
    bool fixedAtEnd = false;
    bool onlyButtons = true;
    for (const Cell& cell : grid.cells) {
      const bool atEnd = cell.column + cell.columns == grid.columns;
      fixedAtEnd = fixedAtEnd || (atEnd && isNumberField(*cell.control));
      if (cell.control->growsWide) layout.setColumnStretch(cell.column + cell.columns - 1, 1);
      if (cell.control->growsTall) layout.setRowStretch(cell.row, 1);
      onlyButtons = onlyButtons && cell.control->design->kind == ControlKind::commandButton;
      wide = wide || cell.control->growsWide;
      tall = tall || cell.control->growsTall;
    }
    if (!wide && !onlyButtons)
      layout.setColumnStretch(fixedAtEnd ? grid.columns : grid.columns - 1, 1);
    if (!tall) layout.setRowStretch(grid.cells.size() == 1 ? 0 : grid.rows, 1);
  }

  /// A field in a column that grows keeps its width, unless it is what grows.
  static Qt::Alignment alignment(const QGridLayout& layout, const Grid& grid, const Cell& cell) {
    const Drawn& control = *cell.control;
    if (grid.columns == 1 && control.design->kind == ControlKind::textBox) return {};
    const bool inGrowingColumn = layout.columnStretch(cell.column + cell.columns - 1) > 0;
    const bool keepsWidth = inGrowingColumn && cell.columns == 1 && !control.growsWide &&
                            control.design->kind == ControlKind::textBox;
    return fillsItsCell(control) && !keepsWidth ? Qt::Alignment() : Qt::AlignLeft;
  }

  QWidget* labelsBeside(const LabelsBeside& beside) const {
    auto* frame = static_cast<QGroupBox*>(widgetOf_(*beside.frame));
    auto* side = makeChild<BesideFrame>(*frame->parentWidget(), *frame);
    auto layout = std::make_unique<QGridLayout>();
    const Grid inner = gridOf(drawing_.inside(beside.frame->design->name));
    for (const Drawn* label : beside.labels) {
      const auto field =
          std::find_if(inner.cells.begin(), inner.cells.end(),
                       [&](const Cell& cell) { return cell.control == label->field; });
      layout->addWidget(widgetOf_(*label), field->row, 0);
    }
    layout->setRowStretch(inner.rows, 1);
    side->setLayout(layout.release());
    return side;
  }

  const Drawing& drawing_;
  const WidgetOf& widgetOf_;
};

}  // namespace

void layOut(const Drawing& drawing, QWidget& window, const WidgetOf& widgetOf) {
  Layouts(drawing, widgetOf).run(window);
}

}  // namespace kova
