// SPDX-License-Identifier: MIT
#include "desktop/drawing.h"

#include <algorithm>
#include <cstdlib>

namespace kova {
namespace {

// A label and its field may overlap by this much.
constexpr int overlap = 100;
constexpr int narrowestGrowingField = 3000;
constexpr int widestNumberField = 1200;
constexpr int lowestTextOfLines = 600;

bool takesALabel(const Drawn& control) {
  const ControlKind kind = control.design->kind;
  return kind == ControlKind::textBox || kind == ControlKind::multiLineTextBox ||
         kind == ControlKind::comboBox;
}

bool inOneLine(const Drawn& one, const Drawn& other) {
  return std::abs(one.inWindow.middle() - other.inWindow.middle()) < lineTolerance;
}

bool standsLeftOf(const Drawn& label, const Drawn& field) {
  return inOneLine(label, field) && label.inWindow.right <= field.inWindow.left + overlap;
}

bool standsAbove(const Drawn& label, const Drawn& field) {
  return label.inWindow.bottom <= field.inWindow.top;
}

Edges edgesOf(const Twips& place) {
  return {place.left, place.top, place.left + place.width, place.top + place.height};
}

}  // namespace

bool isLabel(const Drawn& control) {
  return control.design->kind == ControlKind::label;
}

bool isFrame(const Drawn& control) {
  return control.design->kind == ControlKind::frame;
}

bool isTextOfLines(const Drawn& control) {
  return isLabel(control) && control.design->place.height >= lowestTextOfLines;
}

bool isNumberField(const Drawn& control) {
  return control.design->kind == ControlKind::textBox &&
         control.design->place.width < widestNumberField;
}

Drawing::Drawing(const std::vector<DesignedControl>& controls) {
  controls_.reserve(controls.size());
  for (const DesignedControl& control : controls) controls_.push_back({.design = control.design});
  place();
  nameFields();
  findGrowing();
}

const Drawn& Drawing::control(std::string_view name) const {
  return *std::find_if(controls_.begin(), controls_.end(),
                       [&](const Drawn& drawn) { return drawn.design->name == name; });
}

std::vector<const Drawn*> Drawing::inside(std::string_view container) const {
  std::vector<const Drawn*> result;
  for (const Drawn& drawn : controls_) {
    if (drawn.design->container == container) result.push_back(&drawn);
  }
  return result;
}

void Drawing::place() {
  for (Drawn& drawn : controls_) {
    drawn.inContainer = edgesOf(drawn.design->place);
    drawn.inWindow = drawn.inContainer;
    for (auto outer = drawn.design->container; !outer.empty();) {
      const ControlDesign& frame = *control(outer).design;
      drawn.inWindow.left += frame.place.left;
      drawn.inWindow.right += frame.place.left;
      drawn.inWindow.top += frame.place.top;
      drawn.inWindow.bottom += frame.place.top;
      outer = frame.container;
    }
  }
}

bool Drawing::liesIn(const Drawn& drawn, std::string_view container) const {
  const std::string_view own = drawn.design->container;
  return own == container || (!own.empty() && liesIn(control(own), container));
}

void Drawing::nameFields() {
  for (Drawn& label : controls_) {
    if (!isLabel(label)) continue;
    for (const Drawn& field : controls_) {
      if (!takesALabel(field) || !standsLeftOf(label, field)) continue;
      if (!liesIn(field, label.design->container)) continue;
      if (label.field == nullptr || field.inWindow.left < label.field->inWindow.left) {
        label.field = &field;
      }
    }
  }
  for (Drawn& field : controls_) {
    if (!takesALabel(field)) continue;
    for (const Drawn& label : controls_) {
      if (!isLabel(label) || !liesIn(field, label.design->container)) continue;
      const bool beside = standsLeftOf(label, field);
      const bool above = label.field == nullptr && standsAbove(label, field);
      if (!beside && !above) continue;
      if (field.label == nullptr || label.inWindow.right > field.label->inWindow.right) {
        field.label = &label;
      }
    }
  }
}

void Drawing::findGrowing() {
  for (Drawn& drawn : controls_) {
    const ControlDesign& design = *drawn.design;
    const bool growsTall = design.kind == ControlKind::listBox ||
                           design.kind == ControlKind::multiLineTextBox || isTextOfLines(drawn);
    const bool growsWide = growsTall || (design.kind == ControlKind::textBox &&
                                         design.place.width >= narrowestGrowingField);
    if (!growsWide) continue;
    for (Drawn& outer : controls_) {
      const bool around = isFrame(outer) && liesIn(drawn, outer.design->name);
      if (&outer != &drawn && !around) continue;
      outer.growsWide = true;
      outer.growsTall = outer.growsTall || growsTall;
    }
  }
}

}  // namespace kova
