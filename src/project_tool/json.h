// SPDX-License-Identifier: MIT
// Prints JSON documents.
#pragma once

#include "json/json.h"
#include "project_tool/tool.h"

namespace kova {

/// Prints a document. Bytes of file names that are not UTF-8 are replaced.
inline void print(const Tool& tool, const Json& document) {
  tool.out << document.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

}  // namespace kova
