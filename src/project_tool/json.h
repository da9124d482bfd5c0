// SPDX-License-Identifier: MIT
// JSON whose members stay in the order in which they are written.
#pragma once

#include <nlohmann/json.hpp>

#include "project_tool/tool.h"

namespace kova {

using Json = nlohmann::ordered_json;

/// Prints a document. A file name that is no UTF-8 loses what is none.
inline void print(const Tool& tool, const Json& document) {
  tool.out << document.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

}  // namespace kova
