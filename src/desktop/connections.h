// SPDX-License-Identifier: MIT
// What a view hangs on the model, which outlives it.
#pragma once

#include <QScopeGuard>
#include <utility>
#include <vector>

#include "controls/controls.h"

namespace kova {

/// They leave the model together with the view that holds them.
using Connections = std::vector<QScopeGuard<Handler>>;

template <class Listener, class Call>
void connectView(Connections& connections, Listener& listener, Call call) {
  listener = std::move(call);
  connections.emplace_back([&listener] { listener = {}; });
}

}  // namespace kova
