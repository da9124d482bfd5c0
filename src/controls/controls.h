// SPDX-License-Identifier: MIT
// The window's controls without a toolkit. An assignment is like a user action: the control's
// handler runs before the assignment returns.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "controls/shared_rows.h"
#include "platform/failure.h"

namespace kova {

/// Runs on an event of a control. May be empty.
using Handler = std::function<void()>;

template <class... Values>
void run(const std::function<void(Values...)>& handler, Values... values) {
  if (handler) handler(values...);
}

/// Assigns, and notifies the view if the value has changed.
template <class Value>
bool assign(Value& held, const Value& value, const Handler& notifyView) {
  if (held == value) return false;
  held = value;
  run(notifyView);
  return true;
}

// The `State` of a control is what it shows at one moment. `setState` runs neither a handler nor
// `notifyView`: a widget that follows may move the focus, so all controls are set before any widget
// is told.

/// One or several lines of text that the engineer can edit.
class TextField {
 public:
  struct State {
    Shared<std::string> text;
    std::size_t caret = 0;
    bool enabled = true;
  };
  State state(const State& before) const { return {shared(text_, before.text), caret_, enabled_}; }
  void setState(const State& state) {
    text_ = *state.text;
    caret_ = state.caret;
    enabled_ = state.enabled;
  }

  static constexpr std::int16_t enterKey = 13;

  const std::string& text() const { return text_; }
  /// Assigns a different text, puts the caret at its start and runs `onChange`.
  void setText(std::string_view text);
  /// Called by the view after an edit, with the complete text and the new caret. Runs `onChange` if
  /// the text differs.
  void edit(std::string_view text, std::size_t caret);

  /// Caret position in characters; CR LF counts as two.
  std::size_t caret() const { return caret_; }
  /// Moves the caret, at most to the end of the text.
  void setCaret(std::size_t position);

  bool enabled() const { return enabled_; }
  void setEnabled(bool enabled) { assign(enabled_, enabled, notifyView); }

  /// Takes the input focus. Throws Failure if the field is not on screen or can't have the focus.
  void setFocus() const { run(takeFocus); }
  /// Selects the text on screen, so that typing replaces it.
  void selectText() const { run(selectAll); }

  void click() const { run(onClick); }
  void gotFocus() const { run(onGotFocus); }
  void lostFocus() const { run(onLostFocus); }
  /// A key went down. Runs before the field handles the key.
  void keyDown(std::int16_t code) const { run(onKeyDown, code); }

  Handler onChange;
  Handler onClick;
  Handler onGotFocus;
  Handler onLostFocus;
  std::function<void(std::int16_t)> onKeyDown;
  /// Set by the view; runs after each change that shows.
  Handler notifyView;
  /// Set by the view. Throws Failure if the field can't have the focus.
  Handler takeFocus;
  /// Set by the view, as the model has no selection.
  Handler selectAll;

 private:
  std::string text_;
  std::size_t caret_ = 0;
  bool enabled_ = true;
};

/// A box that is ticked (1) or clear (0).
class CheckBox {
 public:
  struct State {
    std::int16_t value = 0;
  };
  State state(const State& /*before*/) const { return {value_}; }
  void setState(const State& state) { value_ = state.value; }

  std::int16_t value() const { return value_; }
  bool ticked() const { return value_ == 1; }
  /// Assigns 0 or 1 and runs `onClick` if that changes it.
  void setValue(std::int16_t value);
  /// Clears the box without `onClick`: for a handler that can't accept the tick.
  void takeBack() { assign(value_, std::int16_t{0}, notifyView); }

  Handler onClick;
  Handler notifyView;

 private:
  std::int16_t value_ = 0;
};

/// One of several buttons of a container that exclude each other.
class OptionButton {
 public:
  struct State {
    bool selected = false;
  };
  State state(const State& /*before*/) const { return {selected_}; }
  void setState(const State& state) { selected_ = state.selected; }

  bool selected() const { return selected_; }
  /// Selects this button, releases the others of its group and runs `onClick`. Does nothing if it
  /// is already selected.
  void select();
  /// Makes `buttons` exclude each other. They must not move in memory.
  static void group(const std::vector<OptionButton*>& buttons);

  Handler onClick;
  Handler notifyView;

 private:
  bool selected_ = false;
  std::vector<OptionButton*> others_;
};

class CommandButton {
 public:
  struct State {
    bool enabled = true;
  };
  State state(const State& /*before*/) const { return {enabled_}; }
  void setState(const State& state) { enabled_ = state.enabled; }

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

/// A border with a caption. A disabled frame disables its controls.
class Frame {
 public:
  struct State {
    bool enabled = true;
  };
  State state(const State& /*before*/) const { return {enabled_}; }
  void setState(const State& state) { enabled_ = state.enabled; }

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

/// A text next to a field.
class Label {
 public:
  struct State {
    Shared<std::string> caption;
    bool enabled = true;
  };
  State state(const State& before) const { return {shared(caption_, before.caption), enabled_}; }
  void setState(const State& state) {
    caption_ = *state.caption;
    enabled_ = state.enabled;
  }

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

  struct State {
    SharedRows<std::string> lines;
    std::int32_t selected = none;
  };
  State state(const State& before) const { return {{lines_, before.lines}, selected_}; }
  void setState(const State& state) {
    state.lines.copyTo(lines_);
    selected_ = state.selected;
  }

  const std::vector<std::string>& lines() const { return lines_; }
  void add(std::string line);
  /// Inserts a line before another one, or at the end; the same line stays selected. Throws Failure
  /// beyond the end.
  void insert(std::int32_t index, std::string line);
  /// Replaces a line; the selection stays. Throws Failure if there is no such line.
  void replace(std::int32_t index, std::string_view line);
  /// Removes a line. If it was selected, no line is selected. Throws Failure if there is no such
  /// line.
  void remove(std::int32_t index);
  void clear();

  std::int32_t selectedIndex() const { return selected_; }
  /// Selects a line and runs `onClick`, even if it is already selected. Throws Failure if there is
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

/// A list that shows its selected entry and accepts no typed text.
class DropDownList {
 public:
  /// The entries stay the same while the program runs.
  struct State {
    std::int32_t selected = -1;
    bool enabled = true;
  };
  State state(const State& /*before*/) const { return {selected_, enabled_}; }
  void setState(const State& state) {
    selected_ = state.selected;
    enabled_ = state.enabled;
  }

  const std::vector<std::string>& entries() const { return entries_; }
  void add(std::string_view entry);

  std::int32_t selectedIndex() const { return selected_; }
  /// The selected entry; empty if there is none.
  std::string text() const;
  /// Selects an entry and runs `onClick`, even if it is already selected. Throws Failure if there
  /// is no such entry.
  void select(std::int32_t index);
  /// Selects the entry with this text. Throws Failure and keeps the selection if there is none.
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

class Menu {
 public:
  /// Opens the menu at the pointer, if there is a view.
  void popUp() const { run(open); }
  Handler open;
};

/// A window of the program, identified by its address.
class Window {
 public:
  Window() = default;
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;
  ~Window() = default;

  bool loaded() const { return loaded_; }
  bool visible() const { return visible_; }
  /// Loads the window if necessary and shows it in front.
  void show();
  /// Runs `onLoad` without showing the window. Does nothing if it is already loaded.
  void load();
  /// Hides the window and unloads it.
  void unload();

  std::string title;
  Handler onLoad;
  Handler notifyView;
  /// Set by the view: brings the window to the front.
  Handler raise;

 private:
  bool loaded_ = false;
  bool visible_ = false;
};

enum class Buttons { ok, okCancel, yesNo };
enum class Answer { ok, cancel, yes, no };

/// A modal question or statement.
struct Message {
  std::string text{};
  Buttons buttons = Buttons::ok;
  std::string title{};        ///< empty: the name of the program
  Answer enter = Answer::ok;  ///< the answer of the Enter key
};

/// Shows a message and returns the answer.
using MessageBox = std::function<Answer(const Message&)>;

}  // namespace kova
