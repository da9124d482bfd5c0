// SPDX-License-Identifier: MIT
// Where the controls of a window stand: each frame, and the window itself, is a picture of words.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace kova {

/// A line is a row, and a word in it a cell: a control, or a further layout template. "<" belongs
/// to the cell to its left, "^" to the one above, "-" is empty, and so is what a line lacks at its
/// end. Rows and columns with nothing in them take the room that is left over.
struct LayoutTemplate {
  std::string_view name;  ///< of the frame, or of the word that stands for it
  const char* picture = "";
};

/// The layout templates of the two windows. The first one is that of the window itself.
std::vector<LayoutTemplate> mainWindowTemplates();
std::vector<LayoutTemplate> guidedDialogTemplates();

struct TemplateCell {
  std::string word;
  int row = 0;
  int column = 0;
  int rows = 1;
  int columns = 1;
};

struct Grid {
  std::vector<TemplateCell> cells{};
  std::map<int, bool> rows{};  ///< whether anything stands in a row
  std::map<int, bool> columns{};

  /// The cell that covers a place, null if none does.
  const TemplateCell* at(int row, int column) const;
  const TemplateCell* rightOf(const TemplateCell& cell) const {
    return at(cell.row, cell.column + cell.columns);
  }
};

Grid gridOf(const LayoutTemplate& layoutTemplate);

}  // namespace kova
