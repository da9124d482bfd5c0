// SPDX-License-Identifier: MIT
// The three views of a data format: caption in the lists, name in the tables, format code.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/wizard.h"

namespace kova {

/// Fills the four drop-down lists and the table names, and selects the first choices.
void fillCombos(Wizard& wizard);

/// One of the entries of the list of access modes.
bool isAccessMode(std::string_view text);

/// The letters a to z in their upper case.
std::string upperCase(std::string_view text);
std::string lowerCase(std::string_view text);

/// Short form of the code that a name stands for, case ignored, 255 if there is none.
std::uint8_t formatFromString(std::string_view name);

/// List index of a stored format, its array type ignored. Case counts. 34 ("NULL") if it is none.
std::int16_t getFormatIndex(std::string_view fmt);

/// List index of the array type behind the "." of a stored format, 0 ("UNKNOWN") if it has none.
std::int16_t getArrayTypeIndex(std::string_view fmt);

/// The code of the single value that a history or an alarm watch follows for a full code.
std::int16_t sngFormat(std::int16_t fmt);

/// Name of the single value for a table name.
std::string_view singleValueName(std::string_view tableName);

/// Table name at the selected index of a list of formats.
const std::string& selectedFormatName(const Wizard& wizard, const DropDownList& list);

/// "." and the array type in the form, or nothing where none applies.
std::string arrayTypeSuffix(const Wizard& wizard);

}  // namespace kova
