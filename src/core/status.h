// SPDX-License-Identifier: MIT
// The status line: what just happened and what is not yet on disk.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "core/wizard.h"

namespace kova {

/// Shows `sentence` and behind it what of the project is not yet on disk.
void report(Wizard& wizard, const std::string& sentence);

/// A number and its noun: "1 row", "3 rows". `plural` is the noun in the plural.
std::string counted(std::size_t number, std::string_view singular, std::string_view plural);

/// Where and why a reader stopped inside the file `name`; empty if it read to the end or if the
/// file could not be opened.
std::string stopSentence(std::string_view name, const ReadResult& result);
/// The same, and also why a file that is there could not be opened.
std::string stopSentence(const FileSystem& files, const Path& file, std::string_view name,
                         const ReadResult& result);

}  // namespace kova
