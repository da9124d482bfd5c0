// SPDX-License-Identifier: MIT
// How a window is drawn as data: a row a control.
#pragma once

#include <cstdint>
#include <string_view>
#include <variant>
#include <vector>

#include "controls/controls.h"

namespace kova {

enum class ControlKind {
  textBox,
  multiLineTextBox,
  checkBox,
  optionButton,
  commandButton,
  finishButton,  ///< the command button that ends the engineer's work
  frame,
  label,
  listBox,
  comboBox
};

/// A control as it was drawn, inside its container, in twips (1440 an inch). Its size tells how
/// much it is to hold; where it stands on screen is told by a layout template.
struct Twips {
  std::int16_t left = 0;
  std::int16_t top = 0;
  std::int16_t width = 0;
  std::int16_t height = 0;
};

/// The control itself, by its kind.
using ControlPointer = std::variant<TextField*, CheckBox*, OptionButton*, CommandButton*, Frame*,
                                    Label*, ListBox*, DropDownList*>;

/// What a control says, and the letter that reaches it together with the Alt key.
struct Caption {
  constexpr Caption(const char* caption, char letter = '\0') : text(caption), key(letter) {}

  std::string_view text;
  char key;  ///< 0: none. That of a label reaches the field beside it.
};

/// Design values of one control.
struct ControlDesign {
  std::string_view name;
  ControlKind kind = ControlKind::label;
  std::string_view container;  ///< name of the frame it lies in, empty for the window itself
  Caption caption;             ///< of a field the text at start
  std::int16_t tabIndex = 0;
  Twips place;
  std::string_view toolTip{};
  bool enabled = true;
  std::int16_t value = 0;             ///< 1: ticked or selected at start
  std::string_view accessibleName{};  ///< of what neither a label nor a caption names
  std::string_view hintIfEmpty{};     ///< stands in it while nothing else does
};

/// How much of a line a control holds, by how wide it was drawn.
enum class Width { number, name, rest };
Width widthOf(const ControlDesign& design);

/// It has lines to show, the more the better.
bool holdsLines(const ControlDesign& design);

/// A control of one kind of window, by its kind.
template <class Form>
using ControlMember =
    std::variant<TextField Form::*, CheckBox Form::*, OptionButton Form::*, CommandButton Form::*,
                 Frame Form::*, Label Form::*, ListBox Form::*, DropDownList Form::*>;

/// A row of a window's design table.
template <class Form>
struct DesignRow {
  ControlMember<Form> control;
  ControlDesign design;
};

/// A row of a design table together with the control of one window that it describes.
struct DesignedControl {
  const ControlDesign* design = nullptr;
  ControlPointer control;
};

/// The controls of `form` with their design, in the order of `table`, which outlives the result.
template <class Form, class Table>
std::vector<DesignedControl> designedControls(Form& form, const Table& table) {
  std::vector<DesignedControl> controls;
  controls.reserve(table.size());
  for (const DesignRow<Form>& row : table) {
    const auto of = [&form](auto member) { return ControlPointer(&(form.*member)); };
    controls.push_back({&row.design, std::visit(of, row.control)});
  }
  return controls;
}

/// Gives fresh controls their design values. No handler is attached yet, so none runs.
void applyDesign(const std::vector<DesignedControl>& controls);

}  // namespace kova
