// SPDX-License-Identifier: MIT
// The design of a window as data: one row per control.
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
  finishButton,  ///< the command button that finishes the work
  frame,
  label,
  listBox,
  comboBox
};

/// Designed position in the container and size, in twips (1440 per inch). The size shows how much
/// the control holds; a layout template decides its place on screen.
struct Twips {
  std::int16_t left = 0;
  std::int16_t top = 0;
  std::int16_t width = 0;
  std::int16_t height = 0;
};

/// A control, by its kind.
using ControlPointer = std::variant<TextField*, CheckBox*, OptionButton*, CommandButton*, Frame*,
                                    Label*, ListBox*, DropDownList*>;

/// Caption of a control and its access key, used with Alt.
struct Caption {
  constexpr Caption(const char* caption, char letter = '\0') : text(caption), key(letter) {}

  std::string_view text;
  char key;  ///< 0: none. A label's key reaches the field next to it.
};

/// Design values of one control.
struct ControlDesign {
  std::string_view name;
  ControlKind kind = ControlKind::label;
  std::string_view container;  ///< name of its frame, empty for the window
  Caption caption;             ///< of a field: its text at start
  std::int16_t tabIndex = 0;
  Twips place;
  std::string_view toolTip{};
  bool enabled = true;
  std::int16_t value = 0;             ///< 1: ticked or selected at start
  std::string_view accessibleName{};  ///< of a control without label and caption
  std::string_view hintIfEmpty{};     ///< shown while the control is empty
};

/// How much of a line a control gets, by its designed width.
enum class Width { number, name, rest };
Width widthOf(const ControlDesign& design);

/// The control shows lines and should grow with the window.
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

/// A row of a design table and the control that it describes.
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

/// Gives new controls their design values. No handler is connected yet, so none runs.
void applyDesign(const std::vector<DesignedControl>& controls);

}  // namespace kova
