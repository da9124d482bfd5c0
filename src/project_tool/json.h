// SPDX-License-Identifier: MIT
// JSON whose members keep the order in which they are added.
#pragma once

#include <nlohmann/json.hpp>

#include "project_tool/tool.h"

namespace kova {

using Json = nlohmann::ordered_json;

/// Prints a document. Bytes of file names that are not UTF-8 are replaced.
inline void print(const Tool& tool, const Json& document) {
  tool.out << document.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

}  // namespace kova
