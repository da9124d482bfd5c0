// SPDX-License-Identifier: MIT
// What a view hangs on the model, which outlives it.
#pragma once

#include <QScopeGuard>
#include <utility>
#include <vector>

#include "controls/controls.h"

namespace kova {

/// They leave the model together with the view that holds them.
using Hooks = std::vector<QScopeGuard<Handler>>;

template <class Hook, class Call>
void hang(Hooks& hooks, Hook& hook, Call call) {
  hook = std::move(call);
  hooks.emplace_back([&hook] { hook = {}; });
}

}  // namespace kova
