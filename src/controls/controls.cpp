// SPDX-License-Identifier: MIT
#include "controls/controls.h"

#include <algorithm>
#include <utility>

namespace kova {
namespace {

void require(const std::vector<std::string>& lines, std::int32_t index) {
  if (index < 0 || static_cast<std::size_t>(index) >= lines.size()) {
    throw Failure("the list has no such line");
  }
}

}  // namespace

void TextField::setText(std::string_view text) {
  edit(text, text == text_ ? caret_ : 0);
}

void TextField::edit(std::string_view text, std::size_t caret) {
  const bool changed = text != text_;
  if (changed) text_ = text;
  caret_ = std::min(caret, text_.size());
  run(notifyView);
  if (changed) run(onChange);
}

void TextField::setCaret(std::size_t position) {
  caret_ = std::min(position, text_.size());
  run(notifyView);
}

void CheckBox::setValue(std::int16_t value) {
  if (assign(value_, value, notifyView)) run(onClick);
}

void OptionButton::select() {
  if (selected_) return;
  for (OptionButton* other : others_) assign(other->selected_, false, other->notifyView);
  assign(selected_, true, notifyView);
  run(onClick);
}

void OptionButton::group(const std::vector<OptionButton*>& buttons) {
  for (OptionButton* button : buttons) {
    button->others_ = buttons;
    std::erase(button->others_, button);
  }
}

void ListBox::add(std::string line) {
  lines_.push_back(std::move(line));
  run(notifyView);
}

void ListBox::insert(std::int32_t index, std::string line) {
  if (index != static_cast<std::int32_t>(lines_.size())) require(lines_, index);
  lines_.insert(lines_.begin() + index, std::move(line));
  if (selected_ >= index) ++selected_;
  run(notifyView);
}

void ListBox::replace(std::int32_t index, std::string_view line) {
  require(lines_, index);
  lines_[static_cast<std::size_t>(index)] = line;
  run(notifyView);
}

void ListBox::remove(std::int32_t index) {
  require(lines_, index);
  lines_.erase(lines_.begin() + index);
  if (selected_ == index) {
    selected_ = none;
  } else if (selected_ > index) {
    --selected_;
  }
  run(notifyView);
}

void ListBox::clear() {
  if (lines_.empty()) return;
  lines_.clear();
  selected_ = none;
  run(notifyView);
}

void ListBox::select(std::int32_t index) {
  require(lines_, index);
  selected_ = index;
  run(notifyView);
  run(onClick);
}

void DropDownList::add(std::string_view entry) {
  entries_.emplace_back(entry);
  run(notifyView);
}

std::string DropDownList::text() const {
  return selected_ < 0 ? std::string() : entries_[static_cast<std::size_t>(selected_)];
}

void DropDownList::select(std::int32_t index) {
  require(entries_, index);
  selected_ = index;
  run(notifyView);
  run(onClick);
}

void DropDownList::setText(std::string_view text) {
  const auto entry = std::find(entries_.begin(), entries_.end(), text);
  if (entry == entries_.end()) throw Failure("the list does not contain this text");
  select(static_cast<std::int32_t>(entry - entries_.begin()));
}

void Window::load() {
  if (loaded_) return;
  loaded_ = true;
  run(onLoad);
}

void Window::show() {
  load();
  visible_ = true;
  run(notifyView);
  run(raise);
}

void Window::unload() {
  if (!loaded_) return;
  loaded_ = false;
  visible_ = false;
  run(notifyView);
}

}  // namespace kova
