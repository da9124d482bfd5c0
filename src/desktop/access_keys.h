// SPDX-License-Identifier: MIT
// Letters that reach a control together with the Alt key.
#pragma once

#include <string_view>

namespace kova {

/// The letter of a control, 0 if it has none. A label's letter reaches the field beside it.
char accessKey(std::string_view name);

}  // namespace kova
