// SPDX-License-Identifier: MIT
// What the engineer does with a row on the page of what Done would write.
#pragma once

#include <string>

#include "review/review_pages.h"

namespace kova {

/// The disk holds another version of the row that a line is about. `file` is the key of its group.
bool mayPutBack(const Wizard& wizard, const std::string& file, const ReviewLine& line);
/// The row is new.
bool mayLeaveOut(const Wizard& wizard, const std::string& file, const ReviewLine& line);

/// Makes the row what the disk holds. Reports why it can't.
void putBackChosen(Wizard& wizard, const std::string& file, const ReviewLine& line);
/// Removes the new row from the project.
void leaveOutChosen(Wizard& wizard, const std::string& file, const ReviewLine& line);

}  // namespace kova
