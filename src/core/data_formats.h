// SPDX-License-Identifier: MIT
// The three names of a data format: caption in the lists, name in the tables, format code.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/wizard.h"

namespace kova {

/// Fills the four drop-down lists and the table names, and selects the default entries.
void fillCombos(Wizard& wizard);

/// `text` is an entry of the list of access modes.
bool isAccessMode(std::string_view text);

/// ASCII only: a to z become upper case.
std::string upperCase(std::string_view text);
std::string lowerCase(std::string_view text);

/// Short code of a name, case ignored; 255 if there is none.
std::uint8_t formatFromString(std::string_view name);

/// List index of a stored format without its array type, case-sensitive; 34 ("NULL") if unknown.
std::int16_t getFormatIndex(std::string_view fmt);

/// List index of the array type after the "." of a stored format; 0 ("UNKNOWN") if it has none.
std::int16_t getArrayTypeIndex(std::string_view fmt);

/// Code of the single value that a history or an alarm watch records for a full code.
std::int16_t sngFormat(std::int16_t fmt);

/// Name of the single value for a table name.
std::string_view singleValueName(std::string_view tableName);

/// Table name at the selected index of a list of formats.
const std::string& selectedFormatName(const Wizard& wizard, const DropDownList& list);

/// "." and the array type in the form; empty if none applies.
std::string arrayTypeSuffix(const Wizard& wizard);

}  // namespace kova
