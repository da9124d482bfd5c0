// SPDX-License-Identifier: MIT
#include "controls/control_design.h"

namespace kova {
namespace {

struct GiveDesignValues {
  const ControlDesign& design;

  void operator()(TextField* field) const {
    field->setText(design.caption.text);
    field->setEnabled(design.enabled);
  }
  void operator()(CheckBox* box) const { box->setValue(design.value); }
  void operator()(OptionButton* button) const {
    if (design.value == 1) button->select();
  }
  void operator()(Label* label) const {
    label->setCaption(design.caption.text);
    label->setEnabled(design.enabled);
  }
  void operator()(ListBox* /*list*/) const {}
  void operator()(auto* control) const { control->setEnabled(design.enabled); }
};

}  // namespace

void applyDesign(const std::vector<DesignedControl>& controls) {
  for (const auto& [design, control] : controls) std::visit(GiveDesignValues{*design}, control);
}

Width widthOf(const ControlDesign& design) {
  constexpr int widestNumber = 1200;
  constexpr int widestName = 3000;
  if (design.place.width < widestNumber) return Width::number;
  return design.place.width < widestName ? Width::name : Width::rest;
}

bool holdsLines(const ControlDesign& design) {
  constexpr int highestLine = 600;
  return design.kind == ControlKind::listBox || design.kind == ControlKind::multiLineTextBox ||
         (design.kind == ControlKind::label && design.place.height > highestLine);
}

}  // namespace kova
