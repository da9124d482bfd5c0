// SPDX-License-Identifier: MIT
// Changes of rows that no control of the form reaches. They change the project in memory; list and
// ticks follow. None selects a line, since that can open another directory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "core/wizard.h"

namespace kova {

enum class RowTable : std::uint8_t { properties, history, alarms };

/// Removes row `index` (from 0). Throws Failure if the table has no such row. A pending device list
/// goes with a property.
void deleteRow(Wizard& wizard, RowTable table, std::int16_t index);

/// Makes row `onDisk` of a table what the disk holds: it replaces its partner, or is inserted where
/// it was. A property gets the number of devices of the other rows. Throws Failure if there is no
/// such row or the table is full.
void putBack(Wizard& wizard, RowTable table, std::size_t onDisk);

/// Gives a history or alarm row the settings of its panel. Its names, and the index of a history
/// row, stay. Throws Failure if the table has no such row, and ValueFailure without a change if a
/// text of the panel does not fit its column.
void takeFormSettings(Wizard& wizard, RowTable table, std::int16_t index);

/// Numbers the history rows from 1 in their order.
void renumberHistory(Wizard& wizard);

/// Renames a property of the server in the form: its row, its history and alarm watch rows, and the
/// name in the form if it shows the property. Throws Failure without a change if there is no such
/// property, or if the new name is empty or already one.
void renameProperty(Wizard& wizard, const std::string& name, const std::string& newName);

}  // namespace kova
