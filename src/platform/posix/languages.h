// SPDX-License-Identifier: MIT
// What a locale tells of texts that were written on other systems.
#pragma once

#include <string_view>

namespace kova {

/// Number of the Windows code page that desktop systems in the language of `locale` use: 1250 for
/// "pl_PL.UTF-8". 1252 for a name that tells no language, such as "C".
int windowsPageOf(std::string_view locale);

}  // namespace kova
