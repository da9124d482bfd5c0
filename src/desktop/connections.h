// SPDX-License-Identifier: MIT
// Connections of a view to callbacks of the model, which outlives it.
#pragma once

#include <QScopeGuard>
#include <utility>
#include <vector>

#include "controls/controls.h"

namespace kova {

/// Disconnect when the view that holds them goes.
using Connections = std::vector<QScopeGuard<Handler>>;

template <class Callback, class Function>
void connectCallback(Connections& connections, Callback& callback, Function function) {
  callback = std::move(function);
  connections.emplace_back([&callback] { callback = {}; });
}

}  // namespace kova
