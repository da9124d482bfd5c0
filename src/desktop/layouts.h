// SPDX-License-Identifier: MIT
// Turns the arrangement of a window into the toolkit's layouts.
#pragma once

#include <QWidget>
#include <functional>

#include "desktop/arrangement.h"

namespace kova {

/// The widget of a control.
using WidgetOf = std::function<QWidget*(const Drawn&)>;

/// Lays out `window` and all frames in it.
void layOut(const Drawing& drawing, QWidget& window, const WidgetOf& widgetOf);

}  // namespace kova
