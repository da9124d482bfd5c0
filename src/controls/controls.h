// SPDX-License-Identifier: MIT
// The window's controls without a toolkit. An assignment acts like the engineer's own act: the
// control's handler runs at once, before the assignment returns.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/failure.h"

namespace kova {

/// What runs when something happens to a control. An empty one does nothing.
using Handler = std::function<void()>;

template <class... Values>
void run(const std::function<void(Values...)>& handler, Values... values) {
  if (handler) handler(values...);
}

/// Assigns and tells the view if that changed anything.
template <class Value>
bool assign(Value& held, const Value& value, const Handler& notifyView) {
  if (held == value) return false;
  held = value;
  run(notifyView);
  return true;
}

/// One or several lines of text that the engineer can edit.
class TextField {
 public:
  static constexpr std::int16_t enterKey = 13;

  const std::string& text() const { return text_; }
  /// Assigns the text, puts the caret at its start and runs `onChange`. An equal text does nothing.
  void setText(std::string_view text);
  /// What the view reports when the engineer has edited: the whole text and the caret behind the
  /// edit. Runs `onChange` if the text differs.
  void edit(std::string_view text, std::size_t caret);

  /// Caret position in characters, a line ending of CR LF counting as two.
  std::size_t caret() const { return caret_; }
  /// Puts the caret there, or at the end of a shorter text.
  void setCaret(std::size_t position);

  bool enabled() const { return enabled_; }
  void setEnabled(bool enabled) { assign(enabled_, enabled, notifyView); }

  /// Takes the input focus. Throws Failure where the field is not on screen or takes no focus.
  void setFocus() const { run(takeFocus); }
  /// Selects the whole text on screen, so that what is typed next takes its place.
  void selectText() const { run(selectAll); }

  void click() const { run(onClick); }
  void gotFocus() const { run(onGotFocus); }
  void lostFocus() const { run(onLostFocus); }
  /// A key went down, before the field itself has seen it.
  void keyDown(std::int16_t code) const { run(onKeyDown, code); }

  Handler onChange;
  Handler onClick;
  Handler onGotFocus;
  Handler onLostFocus;
  std::function<void(std::int16_t)> onKeyDown;
  /// The view: runs after each change of what the field shows.
  Handler notifyView;
  /// The view's way to the input focus; throws Failure if it can't be had.
  Handler takeFocus;
  /// The view's way to a selection, which the model does not hold.
  Handler selectAll;

 private:
  std::string text_;
  std::size_t caret_ = 0;
  bool enabled_ = true;
};

/// A box that is ticked (1) or clear (0).
class CheckBox {
 public:
  std::int16_t value() const { return value_; }
  bool ticked() const { return value_ == 1; }
  /// Assigns 0 or 1 and runs `onClick` if that changes it.
  void setValue(std::int16_t value);
  /// Clears the box without a word to `onClick`: for a tick that its own handler can't follow.
  void takeBack() { assign(value_, std::int16_t{0}, notifyView); }

  Handler onClick;
  Handler notifyView;

 private:
  std::int16_t value_ = 0;
};

/// One of several buttons of a container that exclude each other.
class OptionButton {
 public:
  bool selected() const { return selected_; }
  /// Selects this button, releases the others of its group and runs `onClick`. Does nothing if it
  /// is selected already.
  void select();
  /// Makes `buttons` exclude each other. They stay where they are for as long as any of them lives.
  static void group(const std::vector<OptionButton*>& buttons);

  Handler onClick;
  Handler notifyView;

 private:
  bool selected_ = false;
  std::vector<OptionButton*> others_;
};

/// A button that the engineer presses.
class CommandButton {
 public:
  bool enabled() const { return enabled_; }
  void setEnabled(bool enabled) { assign(enabled_, enabled, notifyView); }
  /// Runs `onClick` unless the button is disabled.
  void click() const {
    if (enabled_) run(onClick);
  }

  Handler onClick;
  Handler notifyView;

 private:
  bool enabled_ = true;
};

/// A border with a caption. Disabled, it disables what lies in it.
class Frame {
 public:
  static constexpr std::int16_t leftButton = 1;
  static constexpr std::int16_t rightButton = 2;

  bool enabled() const { return enabled_; }
  void setEnabled(bool enabled) { assign(enabled_, enabled, notifyView); }
  void mouseDown(std::int16_t button) const { run(onMouseDown, button); }

  std::function<void(std::int16_t)> onMouseDown;
  Handler notifyView;

 private:
  bool enabled_ = true;
};

/// A text beside a field.
class Label {
 public:
  const std::string& caption() const { return caption_; }
  void setCaption(std::string_view caption) { assign(caption_, std::string(caption), notifyView); }
  bool enabled() const { return enabled_; }
  void setEnabled(bool enabled) { assign(enabled_, enabled, notifyView); }
  void click() const { run(onClick); }

  Handler onClick;
  Handler notifyView;

 private:
  std::string caption_;
  bool enabled_ = true;
};

/// Lines of which at most one is selected.
class ListBox {
 public:
  static constexpr std::int32_t none = -1;

  const std::vector<std::string>& lines() const { return lines_; }
  void add(std::string line);
  /// Replaces a line; the selection stays. Throws Failure if there is no such line.
  void replace(std::int32_t index, std::string_view line);
  /// Takes a line out; if it was the selected one, none is selected. Throws Failure if there is no
  /// such line.
  void remove(std::int32_t index);
  void clear();

  std::int32_t selectedIndex() const { return selected_; }
  /// Selects a line and runs `onClick`, also if it is selected already. Throws Failure if there is
  /// no such line.
  void select(std::int32_t index);
  void doubleClick() const { run(onDblClick); }

  Handler onClick;
  Handler onDblClick;
  Handler notifyView;

 private:
  std::vector<std::string> lines_;
  std::int32_t selected_ = none;
};

/// A list that shows its selected entry and takes no typed text.
class DropDownList {
 public:
  const std::vector<std::string>& entries() const { return entries_; }
  void add(std::string_view entry);

  std::int32_t selectedIndex() const { return selected_; }
  /// The selected entry, empty as long as there is none.
  std::string text() const;
  /// Selects an entry and runs `onClick`, also if it is selected already. Throws Failure if there
  /// is no such entry.
  void select(std::int32_t index);
  /// Selects the entry of this text. Throws Failure if the list does not hold it; the selection
  /// then stays.
  void setText(std::string_view text);

  bool enabled() const { return enabled_; }
  void setEnabled(bool enabled) { assign(enabled_, enabled, notifyView); }

  Handler onClick;
  Handler notifyView;

 private:
  std::vector<std::string> entries_;
  std::int32_t selected_ = -1;
  bool enabled_ = true;
};

/// An entry of a menu.
class MenuEntry {
 public:
  void click() const { run(onClick); }
  Handler onClick;
};

/// A menu that can open at the pointer.
class Menu {
 public:
  /// Opens the menu at the pointer, where a view is there to show it.
  void popUp() const { run(open); }
  Handler open;
};

/// A window of the program, which is told from the others by where it lives.
class Window {
 public:
  Window() = default;
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;
  ~Window() = default;

  bool loaded() const { return loaded_; }
  bool visible() const { return visible_; }
  /// Loads the window if it is not, which runs `onLoad`, and puts it on screen, in front.
  void show();
  /// Loads the window without showing it. Does nothing if it is loaded.
  void load();
  /// Takes the window off the screen and out of the program.
  void unload();

  std::string title;
  Handler onLoad;
  Handler notifyView;
  /// The view brings the window on screen and to the front.
  Handler raise;

 private:
  bool loaded_ = false;
  bool visible_ = false;
};

enum class Buttons { ok, okCancel, yesNo };
enum class Answer { ok, cancel, yes, no };

/// A question or a statement that stops the engineer until it is answered.
struct Message {
  std::string text{};
  Buttons buttons = Buttons::ok;
  std::string title{};        ///< empty: the program's own name
  Answer enter = Answer::ok;  ///< what the Enter key answers
};

/// Shows a message and returns the answer.
using MessageBox = std::function<Answer(const Message&)>;

}  // namespace kova
