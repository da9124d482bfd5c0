// SPDX-License-Identifier: MIT
// A window as it is drawn in its design table: what lies in what, and which label stands for which
// field. All places are in twips.
#pragma once

#include <string_view>
#include <vector>

#include "controls/control_design.h"

namespace kova {

/// Edges of a control.
struct Edges {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;
  int middle() const { return (top + bottom) / 2; }
};

/// A control in its drawing.
struct Drawn {
  const ControlDesign* design = nullptr;
  Edges inContainer{};
  Edges inWindow{};
  /// Of a label the field that it stands for, the first one to its right in the same line.
  const Drawn* field = nullptr;
  /// Of a field the label that stands for it: beside it, or else one above it that has no field.
  const Drawn* label = nullptr;
  /// It, or something in it, takes all the width or height that the window has to give.
  bool growsWide = false;
  bool growsTall = false;
};

bool isLabel(const Drawn& control);
bool isFrame(const Drawn& control);
/// A label with room for several lines.
bool isTextOfLines(const Drawn& control);
/// A field of a few digits, which gains nothing from more room.
bool isNumberField(const Drawn& control);

/// Centres of two controls of one line differ by less than this.
inline constexpr int lineTolerance = 150;

/// The drawing of one window. Its controls stay where they are.
class Drawing {
 public:
  explicit Drawing(const std::vector<DesignedControl>& controls);

  const std::vector<Drawn>& controls() const { return controls_; }
  const Drawn& control(std::string_view name) const;
  /// What lies directly in a container, "" being the window itself.
  std::vector<const Drawn*> inside(std::string_view container) const;

 private:
  void place();
  bool liesIn(const Drawn& control, std::string_view container) const;
  void nameFields();
  void findGrowing();

  std::vector<Drawn> controls_;
};

}  // namespace kova
