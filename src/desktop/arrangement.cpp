// SPDX-License-Identifier: MIT
#include "desktop/arrangement.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace kova {
namespace {

using Controls = std::vector<const Drawn*>;

// Left edges within this distance of the next one make one column.
constexpr int columnTolerance = 400;
// A control that reaches this far into a column takes part of it.
constexpr int reach = 150;

/// A stretch of the drawing's width or height in which controls begin.
struct Band {
  int first = 0;
  int last = 0;
};

/// Bands of places of which each is nearer than `tolerance` to the next.
std::vector<Band> bandsOf(std::vector<int> places, int tolerance) {
  std::sort(places.begin(), places.end());
  std::vector<Band> bands;
  for (const int place : places) {
    if (bands.empty() || place - bands.back().last >= tolerance) bands.push_back({place, place});
    bands.back().last = place;
  }
  return bands;
}

template <class Test>
int lastThat(const std::vector<Band>& bands, Test test) {
  const auto found = std::find_if(bands.rbegin(), bands.rend(), test);
  return found == bands.rend() ? 0 : static_cast<int>(bands.rend() - found) - 1;
}

bool hasFieldBeside(const Drawn& control) {
  return isLabel(control) && control.field != nullptr;
}

/// It stands for a field inside a frame beside it.
bool standsBesideFrame(const Drawn& control) {
  return hasFieldBeside(control) && control.field->design->container != control.design->container;
}

class GridMaker {
 public:
  explicit GridMaker(const Controls& controls) : controls_(controls) {
    findRows();
    findColumns();
  }

  Grid make() {
    for (const Drawn* control : controls_) {
      if (!hasFieldBeside(*control)) addField(*control);
    }
    for (const Drawn* control : controls_) {
      if (standsBesideFrame(*control)) {
        addBeside(*control);
      } else if (hasFieldBeside(*control)) {
        addLabel(*control);
      }
    }
    dropEmptyColumns();
    grid_.rows = static_cast<int>(rows_.size());
    return std::move(grid_);
  }

 private:
  void findRows() {
    std::vector<int> middles;
    for (const Drawn* control : controls_) {
      if (!isFrame(*control) && !standsBesideFrame(*control)) {
        middles.push_back(control->inContainer.middle());
      }
    }
    if (middles.empty()) {
      for (const Drawn* control : controls_) middles.push_back(control->inContainer.middle());
    }
    rows_ = bandsOf(middles, lineTolerance);
  }

  void findColumns() {
    std::vector<int> lefts;
    for (const Drawn* control : controls_) {
      if (!hasFieldBeside(*control)) lefts.push_back(control->inContainer.left);
    }
    columns_ = bandsOf(lefts, columnTolerance);
    grid_.columns = 2 * static_cast<int>(columns_.size());
  }

  int rowOf(const Drawn& control) const {
    return lastThat(rows_,
                    [&](const Band& row) { return row.first <= control.inContainer.middle(); });
  }

  int columnOf(const Drawn& control) const {
    return lastThat(columns_,
                    [&](const Band& column) { return column.first <= control.inContainer.left; });
  }

  static int labelColumn(int column) { return 2 * column; }
  static int fieldColumn(int column) { return 2 * column + 1; }

  void spanRows(Cell& cell) const {
    const Edges& edges = cell.control->inContainer;
    const auto first = std::find_if(rows_.begin(), rows_.end(),
                                    [&](const Band& row) { return row.first >= edges.top; });
    if (!isFrame(*cell.control) || first == rows_.end()) {
      cell.row = rowOf(*cell.control);
      return;
    }
    cell.row = static_cast<int>(first - rows_.begin());
    const int last = lastThat(rows_, [&](const Band& row) { return row.last <= edges.bottom; });
    cell.rows = std::max(1, last - cell.row + 1);
  }

  void addField(const Drawn& control) {
    Cell cell{.control = &control};
    spanRows(cell);
    const int first = columnOf(control);
    const int last = std::max(first, lastThat(columns_, [&](const Band& column) {
                                return column.last + reach < control.inContainer.right;
                              }));
    cell.column = fieldColumn(first);
    cell.columns = fieldColumn(last) - cell.column + 1;
    grid_.cells.push_back(cell);
  }

  bool isFree(int row, int column) const {
    return std::none_of(grid_.cells.begin(), grid_.cells.end(), [&](const Cell& cell) {
      return cell.row <= row && row < cell.row + cell.rows && cell.column <= column &&
             column < cell.column + cell.columns;
    });
  }

  /// Where the controls of a column end, as far as they do ahead of the next column.
  int endOf(int column) const {
    int end = 0;
    for (const Cell& cell : grid_.cells) {
      if (cell.column == fieldColumn(column)) {
        end = std::max(end, cell.control->inContainer.right);
      }
    }
    return std::min(end, columns_[static_cast<std::size_t>(column) + 1].first);
  }

  /// A label stands directly left of its field and reaches back over free cells as far as it does
  /// in the drawing.
  void addLabel(const Drawn& label) {
    const int row = rowOf(*label.field);
    const int last = labelColumn(columnOf(*label.field));
    int first = last;
    while (first > 0 && label.inContainer.left < endOf(first / 2 - 1) && isFree(row, first - 1) &&
           isFree(row, first - 2)) {
      first -= 2;
    }
    if (first < last) ++first;
    grid_.cells.push_back(
        {.control = &label, .row = row, .column = first, .columns = last - first + 1});
  }

  void addBeside(const Drawn& label) {
    const auto around = std::find_if(grid_.cells.begin(), grid_.cells.end(), [&](const Cell& cell) {
      return cell.control->design->name == label.field->design->container;
    });
    const auto same =
        std::find_if(grid_.beside.begin(), grid_.beside.end(),
                     [&](const LabelsBeside& beside) { return beside.frame == around->control; });
    if (same != grid_.beside.end()) {
      same->labels.push_back(&label);
      return;
    }
    Cell place = *around;
    place.column = labelColumn(columnOf(*around->control));
    place.columns = 1;
    grid_.beside.push_back({.frame = around->control, .place = place, .labels = {&label}});
  }

  template <class Visit>
  void eachCell(Visit visit) {
    for (Cell& cell : grid_.cells) visit(cell);
    for (LabelsBeside& beside : grid_.beside) visit(beside.place);
  }

  /// Nothing begins or ends between this column and its neighbour.
  bool isNeedless(int column, int neighbour) {
    const auto covers = [](const Cell& cell, int wanted) {
      return cell.column <= wanted && wanted < cell.column + cell.columns;
    };
    bool needless = true;
    eachCell([&](const Cell& cell) {
      if (covers(cell, column) && !covers(cell, neighbour)) needless = false;
    });
    return needless;
  }

  void dropEmptyColumns() {
    for (int column = grid_.columns - 1; column >= 0; --column) {
      if (!isNeedless(column, column - 1) && !isNeedless(column, column + 1)) continue;
      eachCell([&](Cell& cell) {
        if (cell.column > column) {
          --cell.column;
        } else if (cell.column + cell.columns > column) {
          --cell.columns;
        }
      });
      --grid_.columns;
    }
  }

  const Controls& controls_;
  std::vector<Band> rows_;
  std::vector<Band> columns_;
  Grid grid_;
};

Edges around(const Controls& controls) {
  constexpr int far = std::numeric_limits<int>::max();
  Edges edges{far, far, 0, 0};
  for (const Drawn* control : controls) {
    edges.left = std::min(edges.left, control->inContainer.left);
    edges.top = std::min(edges.top, control->inContainer.top);
    edges.right = std::max(edges.right, control->inContainer.right);
    edges.bottom = std::max(edges.bottom, control->inContainer.bottom);
  }
  return edges;
}

/// The groups into which straight lines cut the controls, from `first` to `last` edge.
std::vector<Controls> cut(Controls controls, int Edges::*first, int Edges::*last) {
  std::sort(controls.begin(), controls.end(), [&](const Drawn* one, const Drawn* other) {
    return one->inContainer.*first < other->inContainer.*first;
  });
  std::vector<Controls> groups;
  int end = 0;
  for (const Drawn* control : controls) {
    if (groups.empty() || control->inContainer.*first >= end) groups.emplace_back();
    groups.back().push_back(control);
    end = std::max(end, control->inContainer.*last);
  }
  return groups;
}

bool isLarge(const Drawn* control) {
  return isFrame(*control) || control->growsTall;
}

bool shareAColumn(const Controls& upper, const Controls& lower) {
  return std::any_of(upper.begin(), upper.end(), [&](const Drawn* one) {
    return std::any_of(lower.begin(), lower.end(), [&](const Drawn* other) {
      return one->inContainer.left == other->inContainer.left;
    });
  });
}

/// Rows of small controls that share a column belong into one grid.
std::vector<Controls> joinedRows(const std::vector<Controls>& rows) {
  std::vector<Controls> joined;
  for (const Controls& row : rows) {
    const bool joins = !joined.empty() && std::none_of(row.begin(), row.end(), isLarge) &&
                       std::none_of(joined.back().begin(), joined.back().end(), isLarge) &&
                       shareAColumn(joined.back(), row);
    if (joins) {
      joined.back().insert(joined.back().end(), row.begin(), row.end());
    } else {
      joined.push_back(row);
    }
  }
  return joined;
}

Part partOf(Part::Kind kind, const Controls& controls, const std::vector<Controls>& groups) {
  Part part{.kind = kind, .edges = around(controls)};
  for (const Controls& group : groups) part.parts.push_back(partsOf(group));
  return part;
}

}  // namespace

Grid gridOf(const Controls& controls) {
  return GridMaker(controls).make();
}

Part partsOf(const Controls& controls) {
  // Small controls that stand side by side make a grid; only large ones are cut apart.
  const bool large = std::any_of(controls.begin(), controls.end(), isLarge);
  const auto columns = cut(controls, &Edges::left, &Edges::right);
  if (large && columns.size() > 1) return partOf(Part::Kind::sideBySide, controls, columns);
  const auto rows = joinedRows(cut(controls, &Edges::top, &Edges::bottom));
  if (rows.size() > 1) return partOf(Part::Kind::stacked, controls, rows);
  return {.kind = Part::Kind::grid, .edges = around(controls), .grid = gridOf(controls)};
}

}  // namespace kova
