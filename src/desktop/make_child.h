// SPDX-License-Identifier: MIT
// Making of widgets that their parent owns.
#pragma once

#include <QWidget>
#include <memory>
#include <utility>

namespace kova {

/// A new widget inside `parent`, which deletes it.
template <class Widget, class... Arguments>
Widget* makeChild(QWidget& parent, Arguments&&... arguments) {
  return std::make_unique<Widget>(std::forward<Arguments>(arguments)..., &parent).release();
}

}  // namespace kova
