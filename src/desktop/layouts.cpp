// SPDX-License-Identifier: MIT
#include "desktop/layouts.h"

#include <QGridLayout>
#include <QGroupBox>
#include <set>
#include <utility>

#include "desktop/frame_side.h"

namespace kova {
namespace {

/// A wider control would promise more content than it takes.
bool keepsItsWidth(const ControlDesign& design) {
  return design.kind == ControlKind::checkBox || design.kind == ControlKind::optionButton ||
         (design.kind == ControlKind::textBox && widthOf(design) != Width::rest);
}

/// The control takes all remaining width.
bool growsWide(const ControlDesign& design) {
  return holdsLines(design) ||
         (design.kind == ControlKind::textBox && widthOf(design) == Width::rest);
}

void require(bool holds, std::string_view word, const char* what) {
  if (!holds) throw Failure("layout template: \"" + std::string(word) + "\" " + what);
}

QGridLayout& gridIn(QWidget& widget) {
  auto* grid = new QGridLayout;
  widget.setLayout(grid);
  return *grid;
}

class Layouts {
 public:
  Layouts(const std::vector<LayoutTemplate>& layoutTemplates, const ShownControls& controls)
      : controls_(controls) {
    for (const LayoutTemplate& layoutTemplate : layoutTemplates)
      grids_.emplace(layoutTemplate.name, gridOf(layoutTemplate));
  }

  std::vector<Naming> run(QWidget& window, std::string_view layoutTemplate) {
    fill(gridIn(window), layoutTemplate, "");
    for (const auto& [name, control] : controls_) {
      require(placed_.contains(name), name, "is not placed");
    }
    return std::move(namings_);
  }

 private:
  /// True if a control in `layout` grows wide.
  bool fill(QGridLayout& layout, std::string_view layoutTemplate, std::string_view frame) {
    const Grid& grid = grids_.at(layoutTemplate);
    for (const auto& [row, filled] : grid.rows) layout.setRowStretch(row, filled ? 0 : 1);
    for (const auto& [at, filled] : grid.columns) layout.setColumnStretch(at, filled ? 0 : 1);
    bool anyGrows = false;
    for (const TemplateCell& cell : grid.cells) check(grid, cell, frame);
    for (const TemplateCell& cell : grid.cells) {
      nameFields(grid, cell);
      if (!add(layout, grid, cell, frame)) continue;
      layout.setColumnStretch(cell.column + cell.columns - 1, 1);
      anyGrows = true;
    }
    for (const TemplateCell& cell : grid.cells) {
      const Shown* control = at(&cell);
      const bool grows = layout.columnStretch(cell.column + cell.columns - 1) > 0;
      if (grows && control != nullptr && keepsItsWidth(*control->design)) {
        layout.setAlignment(control->widget, Qt::AlignLeft);
      }
    }
    return anyGrows;
  }

  void check(const Grid& grid, const TemplateCell& cell, std::string_view frame) {
    const Shown* control = at(&cell);
    require(grid.at(cell.row, cell.column) == &cell, cell.word, "overlaps another cell");
    require(placed_.insert(cell.word).second, cell.word, "is placed twice");
    require(grids_.contains(cell.word) || (control != nullptr && !isFrame(&cell)), cell.word,
            "needs a control or a layout template");
    require(control == nullptr || control->design->container == frame, cell.word,
            "is outside its frame");
  }

  bool add(QGridLayout& layout, const Grid& grid, const TemplateCell& cell,
           std::string_view frame) {
    if (const Shown* control = at(&cell)) {
      layout.addWidget(control->widget, cell.row, cell.column, cell.rows, cell.columns);
      if (isFrame(&cell)) return fill(gridIn(*control->widget), cell.word, cell.word);
      // Sets the last step apart from the controls above.
      if (control->design->kind == ControlKind::finishButton) {
        layout.setContentsMargins(0, layout.verticalSpacing(), 0, 0);
      }
      return growsWide(*control->design);
    }
    if (const TemplateCell* right = grid.rightOf(cell); isFrame(right)) {
      auto& box = *static_cast<QGroupBox*>(at(right)->widget);
      auto* side = new FrameSide(box, box.parentWidget());
      layout.addWidget(side, cell.row, cell.column, cell.rows, cell.columns);
      return fill(gridIn(*side), cell.word, frame);
    }
    auto* part = new QGridLayout;
    layout.addLayout(part, cell.row, cell.column, cell.rows, cell.columns);
    return fill(*part, cell.word, frame);
  }

  void nameFields(const Grid& grid, const TemplateCell& cell) {
    const TemplateCell* right = grid.rightOf(cell);
    if (const Shown* control = at(&cell)) {
      if (control->design->kind != ControlKind::label) return;
      name(cell, right, true);
      if (holdsLines(*control->design)) name(cell, grid.at(cell.row + 1, cell.column), false);
    }
    for (bool first = true; at(&cell) == nullptr && isFrame(right); first = false) {
      for (const TemplateCell& label : grids_.at(cell.word).cells) {
        name(label, grids_.at(right->word).at(label.row, 0), first);
      }
      right = grid.rightOf(*right);
    }
  }

  void name(const TemplateCell& label, const TemplateCell* field, bool leads) {
    if (field != nullptr) namings_.push_back({label.word, field->word, leads});
  }

  const Shown* at(const TemplateCell* cell) const {
    const auto found = cell == nullptr ? controls_.end() : controls_.find(cell->word);
    return found == controls_.end() ? nullptr : &found->second;
  }

  bool isFrame(const TemplateCell* cell) const {
    const Shown* control = at(cell);
    return control != nullptr && control->design->kind == ControlKind::frame;
  }

  const ShownControls& controls_;
  std::map<std::string_view, Grid> grids_;
  std::set<std::string_view> placed_;
  std::vector<Naming> namings_;
};

}  // namespace

std::vector<Naming> layOut(QWidget& window, const std::vector<LayoutTemplate>& layoutTemplates,
                           const ShownControls& controls) {
  return Layouts(layoutTemplates, controls).run(window, layoutTemplates.front().name);
}

}  // namespace kova
