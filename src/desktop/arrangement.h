// SPDX-License-Identifier: MIT
// Rows and columns of a window, derived from its drawing. The drawing's places say what stands
// beside and below what; sizes are left to the toolkit.
#pragma once

#include <vector>

#include "desktop/drawing.h"

namespace kova {

/// A control's place in a grid.
struct Cell {
  const Drawn* control = nullptr;
  int row = 0;
  int column = 0;
  int rows = 1;
  int columns = 1;
};

/// Labels beside a frame that stand for the fields in it, line by line.
struct LabelsBeside {
  const Drawn* frame = nullptr;
  Cell place{};
  std::vector<const Drawn*> labels{};
};

struct Grid {
  std::vector<Cell> cells;
  std::vector<LabelsBeside> beside;
  int rows = 0;
  int columns = 0;
};

/// The grid of controls that lie in one container: fields of about the same left edge share a
/// column, with a column for their labels to its left.
Grid gridOf(const std::vector<const Drawn*>& controls);

/// A part of the window: a grid, or parts side by side or one above the other.
struct Part {
  enum class Kind { grid, sideBySide, stacked };
  Kind kind = Kind::grid;
  Edges edges{};
  Grid grid{};
  std::vector<Part> parts{};
};

/// The window itself, cut where a straight line meets no control.
Part partsOf(const std::vector<const Drawn*>& controls);

}  // namespace kova
