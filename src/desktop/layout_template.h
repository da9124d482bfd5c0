// SPDX-License-Identifier: MIT
// The layout of a window and of each frame in it, drawn as a table of words.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace kova {

/// Each line is a row, and each word a cell: a control or another layout template. "<" extends the
/// cell to its left, "^" the one above, "-" is empty, and so are missing words at the end of a
/// line. Empty rows and columns take the remaining space.
struct LayoutTemplate {
  std::string_view name;  ///< of the frame, or the word that refers to it
  const char* picture = "";
};

/// The layout templates of the two windows, beginning with the window itself.
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
  std::map<int, bool> rows{};  ///< true if a row is not empty
  std::map<int, bool> columns{};

  /// The cell at a place, or null.
  const TemplateCell* at(int row, int column) const;
  const TemplateCell* rightOf(const TemplateCell& cell) const {
    return at(cell.row, cell.column + cell.columns);
  }
};

Grid gridOf(const LayoutTemplate& layoutTemplate);

}  // namespace kova
