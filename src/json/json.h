// SPDX-License-Identifier: MIT
// JSON documents whose members keep the order in which they are added.
#pragma once

#include <nlohmann/json.hpp>

namespace kova {

using Json = nlohmann::ordered_json;

}  // namespace kova
