// SPDX-License-Identifier: MIT
#include "desktop/layout_template.h"

#include <algorithm>
#include <sstream>

namespace kova {
namespace {

template <class Cells>
auto* findCell(Cells& cells, int row, int column) {
  const auto found = std::find_if(cells.begin(), cells.end(), [&](const TemplateCell& cell) {
    return cell.row <= row && row < cell.row + cell.rows && cell.column <= column &&
           column < cell.column + cell.columns;
  });
  return found == cells.end() ? nullptr : &*found;
}

void addWord(Grid& grid, const std::string& word, int row, int column) {
  grid.rows[row] |= word != "-";
  grid.columns[column] |= word != "-";
  TemplateCell* left = findCell(grid.cells, row, column - 1);
  TemplateCell* above = findCell(grid.cells, row - 1, column);
  if (word == "<" && left != nullptr) {
    left->columns = column - left->column + 1;
  } else if (word == "^" && above != nullptr) {
    above->rows = row - above->row + 1;
  } else if (word != "-") {
    grid.cells.push_back({.word = word, .row = row, .column = column});
  }
}

}  // namespace

const TemplateCell* Grid::at(int row, int column) const {
  return findCell(cells, row, column);
}

Grid gridOf(const LayoutTemplate& layoutTemplate) {
  Grid grid;
  std::istringstream picture(layoutTemplate.picture);
  std::string line;
  for (int row = 0; std::getline(picture, line); ++row) {
    std::istringstream words(line);
    std::string word;
    for (int column = 0; words >> word; ++column) addWord(grid, word, row, column);
  }
  return grid;
}

}  // namespace kova
